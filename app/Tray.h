// SPDX-License-Identifier: MIT
#pragma once

#include "app/AreaFrame.h"
#include "app/Commands.h"
#include "model/MainViewModel.h"
#include "storage/SwitchFile.h"
#include "ui/TrayIcon.h"

#include <QCoroTask>
#include <QFuture>
#include <QObject>
#include <QStringList>

#include <functional>
#include <memory>

namespace glimmerpane
{

/** The icon in the desktop's tray, if the user wants one, and what its entries do. Main thread. */
class Tray : public QObject
{
    Q_OBJECT

public:
    struct Windows {
        std::function<void()> bringForward; ///< the main window, and an alert over it
        std::function<void()> close; ///< the main window
    };

    /** On or off as stored. The model, the frame and the commands must outlive this object. */
    Tray(MainViewModel &model, const AreaFrame &frame, Commands &commands, SettingsFile file,
         Windows windows);

    /** Finishes when it is stored. Without a session bus, nothing is ever shown. */
    QFuture<void> turn(bool on);

private:
    void show();
    QCoro::Task<> readAreaNames();
    void obey(const QStringList &arguments);
    void tellOfFailure(const QString &text);
    void quit();

    MainViewModel &model_;
    const AreaFrame &frame_;
    Commands &commands_;
    SwitchFile file_;
    const Windows windows_;
    std::unique_ptr<TrayIcon> icon_; ///< null while it is off
};

} // namespace glimmerpane
