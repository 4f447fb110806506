// SPDX-License-Identifier: MIT
#pragma once

#include "app/AreaFrame.h"
#include "app/InstanceBus.h"
#include "app/LaunchOptions.h"
#include "app/Shortcuts.h"

#include "platform/Backend.h"

#include <QCoroTask>
#include <QObject>
#include <QThreadPool>

#include <functional>

namespace glimmerpane
{

/** Carries out command lines in the running program. Main thread. */
class Commands : public QObject
{
    Q_OBJECT

public:
    using Reply = InstanceBus::Reply;

    /**
     * `running` is what this program runs with, which may not show clicks; `bringForward` raises
     * the main window; `turnTray` shows or hides the icon in the tray, and finishes when that is
     * stored. The references must outlive this object.
     */
    Commands(MainViewModel &model, AreaFrame &frame, Shortcuts &shortcuts, BackendRequest running,
             bool showsClicks, std::function<void(const QString &startupId)> bringForward,
             std::function<QFuture<void>(bool)> turnTray);

    /** Carries out a command line from another launch, or from the tray. */
    void obey(const CommandLine &command, const Reply &reply);

    /**
     * Replies once everything requested is done or has failed. The selector counts as done once it
     * is open.
     */
    void obey(const LaunchOptions &options, const Reply &reply);

    /** How the screen is read, as --backend takes it. */
    const QString &backend() const { return running_.name; }
    /** "shown", or "none" if the others see no clicks. */
    QString clicks() const;
    /** Of the stored areas; none if they cannot be read. */
    QFuture<QStringList> areaNames();

private:
    QCoro::Task<> obeyAboutAreas(LaunchOptions options, Reply reply);
    QCoro::Task<> obeyAboutShortcuts(LaunchOptions options, Reply reply);
    Reply afterwards(const QFuture<void> &written, const Reply &reply);
    void share(const Reply &reply);
    void select(const Reply &reply);
    QCoro::Task<> move(AreaMove move, bool saves, Reply reply);
    QCoro::Task<> obey(SessionOrder order, Reply reply);
    CommandResult status() const;

    MainViewModel &model_;
    AreaFrame &frame_;
    Shortcuts &shortcuts_;
    const BackendRequest running_;
    const bool showsClicks_;
    const std::function<void(const QString &)> bringForward_;
    const std::function<QFuture<void>(bool)> turnTray_;
    QThreadPool storing_; ///< the only thread that uses the areas with names
};

} // namespace glimmerpane
