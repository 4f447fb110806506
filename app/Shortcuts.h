// SPDX-License-Identifier: MIT
#pragma once

#include "app/AreaFrame.h"
#include "app/LaunchOptions.h"
#include "model/MainViewModel.h"
#include "platform/portal/PortalShortcuts.h"
#include "storage/SwitchFile.h"

#include <QCoroTask>
#include <QObject>

#include <functional>
#include <memory>

namespace glimmerpane
{

/**
 * The desktop's shortcuts for sharing, pausing and the frame, if the user wants them. Which keys
 * these are is between the user and the desktop. Main thread.
 */
class Shortcuts : public QObject
{
    Q_OBJECT

public:
    using Result = std::expected<void, Error>;

    /** The references must outlive this object. There are none before restore() or turn(). */
    Shortcuts(SettingsFile file, const MainViewModel &model, const AreaFrame &frame);

    /** On or off as stored. */
    QCoro::Task<> restore();
    /**
     * Finishes once it is stored, and the desktop is asking the user if it has to. On failure
     * nothing has changed.
     */
    QCoro::Task<Result> turn(bool on);

Q_SIGNALS:
    /** What the pressed keys ask for. */
    void pressed(const LaunchOptions &options);
    /** The user has to know why there are no shortcuts. */
    void failed(const QString &text);

private:
    using Portal = portal::PortalShortcuts;

    QCoro::Task<Result> open();
    QCoro::Task<> bind();
    void handle(const QString &id);
    void handleEnd(bool portalHasLeft);

    SwitchFile file_;
    const MainViewModel &model_;
    const AreaFrame &frame_;
    std::unique_ptr<Portal> portal_; ///< null while they are off
    bool isBound_ = false;
};

} // namespace glimmerpane
