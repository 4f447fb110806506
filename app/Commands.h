// SPDX-License-Identifier: MIT
#pragma once

#include "app/InstanceBus.h"
#include "app/LaunchOptions.h"

#include <QObject>

#include <functional>

namespace glimmerpane
{

class MainViewModel;

/** Does what a command line asks of the running program. Main thread. */
class Commands : public QObject
{
    Q_OBJECT

public:
    using Reply = InstanceBus::Reply;

    /** `bringForward` shows the main window to a person. The model must outlive the commands. */
    Commands(MainViewModel &model, OffscreenWindowKind outputWindow,
             std::function<void(const QString &startupId)> bringForward);

    /** For a command from another launch. */
    void obey(const CommandLine &command, const Reply &reply);

    /**
     * Replies when everything asked for has been done, or has failed. What opens and ends with the
     * person, as the selector does, counts as done when it is open.
     */
    void obey(const LaunchOptions &options, const Reply &reply);

private:
    void share(const Reply &reply);
    void select(const Reply &reply);
    CommandResult status() const;

    MainViewModel &model_;
    const OffscreenWindowKind outputWindow_;
    const std::function<void(const QString &)> bringForward_;
};

} // namespace glimmerpane
