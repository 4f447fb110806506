// SPDX-License-Identifier: MIT
#pragma once

#include "model/AreaSize.h"
#include "model/SharingSession.h"
#include "platform/Backend.h"
#include "services/Alert.h"
#include "services/FrameRepositoryProtocol.h"
#include "services/Identity.h"
#include "services/ServiceInterfaces.h"

#include <QObject>
#include <QTimer>

#include <expected>
#include <memory>
#include <utility>

namespace glimmerpane
{

/**
 * The program's observable state: the capture area, and whether the selector and a sharing session
 * are open. Owns the services and uses them only through their interfaces. Main thread.
 */
class MainViewModel : public QObject
{
    Q_OBJECT

public:
    /**
     * Loads the saved area. Without an update client there is no update check. `alerts` must
     * outlive the view model.
     */
    MainViewModel(std::unique_ptr<FrameRepositoryProtocol> frameRepository,
                  std::unique_ptr<UpdateRepositoryProtocol> updateRepository,
                  std::unique_ptr<WindowCoordinatorProtocol> windowCoordinator,
                  std::unique_ptr<CaptureServiceProtocol> captureService, Backend backend,
                  AlertPresenterProtocol &alerts, Identity identity);

    const Identity &identity() const { return identity_; }

    const CaptureFrame &currentFrame() const { return currentFrame_; }
    bool isFrameSelectorOpen() const { return isFrameSelectorOpen_; }
    bool isSharingWindowOpen() const { return isSharingWindowOpen_; }

    /** Opens the selector over the current area, unless one is open or a session is starting. */
    void openFrameSelector();
    /** Opens the selector over its own default area. */
    void resetFrameSelector();
    void frameSelected(const CaptureFrame &frame);
    void frameSelectionCancelled();

    /** Sets and saves the area if all four texts are numbers; otherwise does nothing. */
    void updateFrame(const QString &x, const QString &y, const QString &width,
                     const QString &height);

    /** Gives the area another size, and saves it. The error says why it cannot have that size. */
    std::expected<void, Error> setAreaSize(const AreaSize &size);
    /** Sets and saves the area, whose numbers are finite. */
    void useArea(const CaptureFrame &area);

    /** Writes pending changes immediately. Finishes when nothing is left to write. */
    QFuture<void> areaWritten() { return frameRepository_->allWritten(); }

    CaptureStatistics captureStatistics() const { return captureService_->statistics(); }
    /** Whether one of this program's alerts is open. */
    bool isAlertShown() const { return alertsUp_ > 0 || isAskingToClose_ || isTelling_; }
    /** Shows an alert about something that was not asked for in the main window. */
    void tellOfFailure(const QString &text);
    /**
     * Whether the main window may close. Asks the user while a session is running or starting.
     * False while that question is already open.
     */
    bool mayClose();

    /** Starts a session unless one is already running or starting. Failures are shown in alerts. */
    QCoro::Task<> startSharing();
    /** Whether a starting session is still checking that the screen may be read. */
    bool isCheckingPermission() const { return isCheckingPermission_; }
    /** See SharingSession for these. */
    std::optional<CaptureFrame> sharedFrame() const { return session_.frame(); }
    bool isPaused() const { return session_.isPaused(); }
    /** Whether another program reads the output window; null if nobody tells, or there is none. */
    std::optional<bool> isWatched() const { return windowCoordinator_->isSharingWindowWatched(); }
    /** Also stores the area if `saves`. */
    QCoro::Task<SharingSession::Result> moveSharing(CaptureFrame frame, bool saves);
    /** A session that is starting starts paused. */
    SharingSession::Result pauseSharing(PausePicture picture);
    /** A failure ends the session, and an alert says so a moment later. */
    QCoro::Task<SharingSession::Result> resumeSharing();

    /** Displays have changed: the area's points may be elsewhere. */
    void displaysChanged();
    /** Closes the output window; the window watch then ends the session. */
    void stopSharing();
    /** Ends a running or starting session immediately, even while an alert is open. */
    void endSharing();

    /**
     * Asks the update service for a newer version and offers its download. On failure, prints one
     * line to standard output.
     */
    QCoro::Task<> checkForUpdates();
    /** Whether an update request is still unanswered. */
    bool isCheckingForUpdates() const { return isCheckingForUpdates_; }

Q_SIGNALS:
    /** A published property is about to be assigned, possibly to the same value. */
    void objectWillChange();
    /** isCheckingPermission() has changed. */
    void startingChanged();
    /** A start has succeeded, or failed with an error that is about to be shown. */
    void startEnded(const QString &error);
    /** sharedFrame() has changed, or where its points are. */
    void sharedFrameChanged();
    /** isPaused() has changed. */
    void pausedChanged();
    /** isWatched() may have changed during a session. */
    void watchedChanged();
    /** The selector has opened, or failed to with an error that is about to be shown. */
    void frameSelectorShown(const QString &error);

private:
    template<typename T>
    void publish(T &property, T value)
    {
        Q_EMIT objectWillChange();
        property = std::move(value);
    }
    CaptureFrame initialFrame() const;
    void showFrameSelector(std::optional<CaptureFrame> initialFrame);

    void installSessionWatch();
    void openSharingWindow();
    QCoro::Task<> runCapture(std::shared_ptr<SharingWindow> window);
    void captureStartFailed(const Error &reason);
    void closeSession();
    void checkSharingWindow();
    void handleCaptureEnded(const Error &reason);
    void tellThatSharingEnded(const QString &reason);
    void showScreenRecordingPermissionAlert(const Error &reason);
    void showUpdateAlert(const UpdateInfo &info, const QString &currentVersion);
    bool setCheckingPermission(bool isChecking);
    int runModal(const Alert &alert);

    CaptureFrame currentFrame_;
    bool isFrameSelectorOpen_ = false;
    bool isSharingWindowOpen_ = false;
    const std::unique_ptr<FrameRepositoryProtocol> frameRepository_;
    const std::unique_ptr<UpdateRepositoryProtocol> updateRepository_;
    const std::unique_ptr<WindowCoordinatorProtocol> windowCoordinator_;
    const std::unique_ptr<CaptureServiceProtocol> captureService_;
    const Backend backend_;
    AlertPresenterProtocol &alerts_;
    const Identity identity_;
    SharingSession session_;
    QTimer windowCheckTimer_;
    bool isCheckingPermission_ = false;
    std::optional<PausePicture> firstPause_; ///< with which the session is to start
    bool isCheckingForUpdates_ = false;
    bool isAskingToClose_ = false;
    bool isTelling_ = false;
    int alertsUp_ = 0;
};

} // namespace glimmerpane
