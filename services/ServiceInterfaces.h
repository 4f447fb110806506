// SPDX-License-Identifier: MIT
#pragma once

#include "services/CaptureFrame.h"
#include "services/Error.h"

#include <QCoroTask>
#include <QString>

#include <cstdint>
#include <expected>
#include <functional>
#include <memory>
#include <optional>

namespace glimmerpane
{

class SharingWindow;

/** Opens and closes the two secondary windows. Main thread. */
class WindowCoordinatorProtocol
{
public:
    using FrameHandler = std::function<void(const CaptureFrame &)>;
    using Handler = std::function<void()>;

    virtual ~WindowCoordinatorProtocol() = default;

    /**
     * Shows the area selector over `initialFrame`, or over its own default area. Later calls
     * exactly one of the handlers: `onConfirm` before the selector closes, `onCancel` if it closes
     * in any other way. If it cannot open, `onCancel` has already been called.
     */
    virtual std::expected<void, Error> showFrameSelector(std::optional<CaptureFrame> initialFrame,
                                                         FrameHandler onConfirm, Handler onCancel)
        = 0;

    /** Closes the selector, if one is open, without calling either handler. */
    virtual void closeFrameSelector() = 0;

    /** Creates and shows the output window for an area of this size, replacing any earlier one. */
    virtual std::shared_ptr<SharingWindow> showSharingWindow(const CaptureFrame &frame) = 0;

    /** Hides and releases the output window, if there is one. */
    virtual void closeSharingWindow() = 0;

    /** Whether there is an output window and it is shown. */
    virtual bool isSharingWindowVisible() const = 0;

    /** Whether another program reads the output window; null without one, or if nobody tells. */
    virtual std::optional<bool> isSharingWindowWatched() const = 0;
    /** Called when that may have changed while the window is open. Set once, by the view model. */
    virtual void setOnWatchedChanged(Handler handler) = 0;
};

/** Statistics of the current session; zeros without one. */
struct CaptureStatistics {
    std::int64_t framesInLastSecond = 0; ///< shown
    std::int64_t dropped = 0; ///< since the session's start
};

/** What the window shows while the capture is paused. */
enum class PausePicture {
    Latest, ///< the latest picture of the area
    Plain, ///< a picture that says so
};

/** Runs the live capture of one area into one window. Main thread. */
class CaptureServiceProtocol
{
public:
    using EndHandler = std::function<void(const Error &reason)>;
    using StartResult = std::expected<void, Error>;

    virtual ~CaptureServiceProtocol() = default;

    /**
     * Called on the main thread when the stream ends by itself, never because of stopCapture(),
     * with a reason for the user, who may be the one that ended it. Set once, by the view model.
     */
    virtual void setOnCaptureEnded(EndHandler handler) = 0;

    /**
     * Starts showing `frame` in `window`. If stopCapture() is called meanwhile, the start completes
     * without an error and leaves nothing running.
     */
    virtual QCoro::Task<StartResult> startCapture(CaptureFrame frame,
                                                  std::shared_ptr<SharingWindow> window)
        = 0;

    /**
     * Shows `frame` instead, in the same window and without a gap. On failure, the previous area is
     * still shown. Not while another move is pending. If stopCapture() or pauseCapture() is called
     * meanwhile, the move completes without an error and has no effect.
     */
    virtual QCoro::Task<StartResult> moveCapture(CaptureFrame frame) = 0;

    /**
     * Ends the current run or a pending start, but leaves a picture in the window. When this
     * returns, nothing of the screen gets into the window any more. startCapture() goes on.
     */
    virtual void pauseCapture(PausePicture picture) = 0;

    /** Ends the current run or a pending start, and returns immediately. */
    virtual void stopCapture() = 0;

    virtual CaptureStatistics statistics() const = 0;
};

/** What the update service answers. */
struct UpdateInfo {
    QString lastAppVersion; ///< for display only, never compared
    QString downloadUrl;
    bool canUpdate = false;
};

/**
 * Asks the update service for a newer version. An error's text for the log is printed on a line
 * that scripts read, so it is never translated.
 */
class UpdateRepositoryProtocol
{
public:
    using CheckResult = std::expected<UpdateInfo, Error>;

    virtual ~UpdateRepositoryProtocol() = default;

    virtual QCoro::Task<CheckResult> checkForUpdate(QString serialNumber, QString appVersion) = 0;
};

} // namespace glimmerpane
