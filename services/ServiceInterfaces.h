// SPDX-License-Identifier: MIT
#pragma once

#include "services/CaptureFrame.h"
#include "services/Error.h"

#include <QCoreApplication>
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
     * Shows the area selector, over `initialFrame` or over its own default area. Later calls
     * exactly one of the two: `onConfirm` before the selector closes, `onCancel` when it closes in
     * any other way. Where it cannot open, `onCancel` has been called already.
     */
    virtual std::expected<void, Error> showFrameSelector(std::optional<CaptureFrame> initialFrame,
                                                         FrameHandler onConfirm, Handler onCancel)
        = 0;

    /** Closes the selector, if one is open, without calling either handler. */
    virtual void closeFrameSelector() = 0;

    /** Makes and shows the output window for an area of this size, in place of any earlier one. */
    virtual std::shared_ptr<SharingWindow> showSharingWindow(const CaptureFrame &frame) = 0;

    /** Hides the output window and lets it go; nothing where there is none. */
    virtual void closeSharingWindow() = 0;

    /** Whether an output window is held and currently shown. */
    virtual bool isSharingWindowVisible() const = 0;
};

/** Why a capture could not start. */
struct CaptureFailure {
    QString description; ///< for a person
};

/** How the current session goes; zeros without one. */
struct CaptureStatistics {
    std::int64_t framesInLastSecond = 0; ///< shown
    std::int64_t dropped = 0; ///< since the session's start
};

/** Runs the live capture of one area into one window. Main thread. */
class CaptureServiceProtocol
{
public:
    using EndHandler = std::function<void(const QString &reason)>;
    using StartResult = std::expected<void, CaptureFailure>;

    virtual ~CaptureServiceProtocol() = default;

    /**
     * Called on the main thread when the stream ends by itself, never because of stopCapture(),
     * with the reason in words for a person. Set once, by the view model.
     */
    virtual void setOnCaptureEnded(EndHandler handler) = 0;

    /**
     * Starts showing `frame` in `window`. A start during which stopCapture() is called completes
     * without an error and leaves nothing running.
     */
    virtual QCoro::Task<StartResult> startCapture(CaptureFrame frame,
                                                  std::shared_ptr<SharingWindow> window)
        = 0;

    /** Ends the current run, or the start in flight, and returns at once. */
    virtual void stopCapture() = 0;

    virtual CaptureStatistics statistics() const = 0;
};

/** What the update service answers. */
struct UpdateInfo {
    QString lastAppVersion; ///< only displayed, never compared
    QString downloadUrl;
    bool canUpdate = false;
};

/** Why the update service gave no answer. */
struct UpdateFailure {
    QString description; ///< for a person
    QString text; ///< the error's textual form, for a line that scripts read; English

    /** Where both are the same. */
    static UpdateFailure withText(const QString &text)
    {
        return {.description = text, .text = text};
    }

    Q_DECLARE_TR_FUNCTIONS(glimmerpane::UpdateFailure)
};

/** Asks the update service about a newer version. */
class UpdateRepositoryProtocol
{
public:
    using CheckResult = std::expected<UpdateInfo, UpdateFailure>;

    virtual ~UpdateRepositoryProtocol() = default;

    virtual QCoro::Task<CheckResult> checkForUpdate(QString serialNumber, QString appVersion) = 0;
};

} // namespace glimmerpane
