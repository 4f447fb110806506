// SPDX-License-Identifier: MIT
#pragma once

#include "ui/TrayHost.h"
#include "ui/TrayMenu.h"
#include "ui/TrayPicture.h"

#include <QObject>
#include <QStringList>
#include <QSystemTrayIcon>

#include <memory>
#include <optional>

namespace glimmerpane
{

class MainViewModel;

/**
 * The program in the desktop's tray, as soon as there is one: its icon and tooltip tell whether the
 * area is shared, its menu carries out commands. Needs a session bus. Main thread.
 */
class TrayIcon : public QObject
{
    Q_OBJECT

public:
    /** The model must outlive this object. */
    explicit TrayIcon(const MainViewModel &model);

    /** Whether a frame is shown around the area while it is shared. */
    void setFrameShown(bool isShown);
    /** The areas that are stored under names. */
    void setAreaNames(const QStringList &names) { menu_.setAreaNames(names); }

Q_SIGNALS:
    /** A command line, without the program's name. */
    void commandChosen(const QStringList &arguments);
    void quitChosen();
    /** The menu is being opened, or a part of it. */
    void menuOpening();

private:
    void show();
    TrayState state() const;
    void scheduleRefresh();
    void refresh();

    const MainViewModel &model_;
    TrayMenu menu_;
    std::unique_ptr<QSystemTrayIcon> icon_; ///< null until the desktop has a tray
    std::optional<TrayState> shown_;
    bool isFrameShown_ = false;
    bool isRefreshScheduled_ = false;
    const TrayHost host_;
};

} // namespace glimmerpane
