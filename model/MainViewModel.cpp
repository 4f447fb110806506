// SPDX-License-Identifier: MIT
#include "model/MainViewModel.h"

#include "model/Alerts.h"
#include "model/AreaFlaw.h"
#include "model/Log.h"
#include "model/NumberText.h"

#include <QPointer>
#include <QScopeGuard>

#include <chrono>
#include <cstdio>
#include <utility>

namespace glimmerpane
{

namespace
{

using namespace std::chrono_literals;
using Pace = FrameRepositoryProtocol::Pace;

constexpr CaptureFrame fallbackFrame{.x = 0, .y = 0, .width = 1920, .height = 1080};
constexpr auto windowCheckInterval = 500ms;

/** For scripts, so never translated. Flushed at once, even into a pipe. */
void printLine(const QString &text)
{
    std::printf("%s\n", qPrintable(text.simplified()));
    std::fflush(stdout);
}

} // namespace

MainViewModel::MainViewModel(std::unique_ptr<FrameRepositoryProtocol> frameRepository,
                             std::unique_ptr<UpdateRepositoryProtocol> updateRepository,
                             std::unique_ptr<WindowCoordinatorProtocol> windowCoordinator,
                             std::unique_ptr<CaptureServiceProtocol> captureService,
                             Backend backend, AlertPresenterProtocol &alerts, Identity identity)
    : frameRepository_(std::move(frameRepository))
    , updateRepository_(std::move(updateRepository))
    , windowCoordinator_(std::move(windowCoordinator))
    , captureService_(std::move(captureService))
    , backend_(std::move(backend))
    , alerts_(alerts)
    , identity_(std::move(identity))
    , session_(*captureService_, *windowCoordinator_, backend_)
{
    currentFrame_ = initialFrame();
    installSessionWatch();
    connect(&session_, &SharingSession::frameChanged, this, &MainViewModel::sharedFrameChanged);
    connect(&session_, &SharingSession::pausedChanged, this, &MainViewModel::pausedChanged);
    windowCoordinator_->setOnWatchedChanged([self = QPointer(this)] {
        if (self) {
            Q_EMIT self->watchedChanged();
        }
    });
}

CaptureFrame MainViewModel::initialFrame() const
{
    if (const auto stored = frameRepository_->load()) {
        return *stored;
    }
    if (const auto display = backend_.displays->mainDisplay()) {
        const Rect screen = display->frame();
        return {.x = screen.x, .y = screen.y, .width = screen.width, .height = screen.height};
    }
    return fallbackFrame;
}

void MainViewModel::openFrameSelector()
{
    showFrameSelector(currentFrame_);
}

void MainViewModel::resetFrameSelector()
{
    showFrameSelector(std::nullopt);
}

void MainViewModel::showFrameSelector(std::optional<CaptureFrame> initialFrame)
{
    if (isFrameSelectorOpen_ || isCheckingPermission_) {
        return;
    }
    publish(isFrameSelectorOpen_, true);
    const QPointer self(this);
    const auto confirmed = [self](const CaptureFrame &frame) {
        if (self) {
            self->frameSelected(frame);
        }
    };
    const auto cancelled = [self] {
        if (self) {
            self->frameSelectionCancelled();
        }
    };
    const auto shown = windowCoordinator_->showFrameSelector(initialFrame, confirmed, cancelled);
    Q_EMIT frameSelectorShown(shown ? QString() : shown.error().text);
    if (!shown) {
        runModal({.messageText = tr("Set Area"),
                  .informativeText = shown.error().text,
                  .style = Alert::Style::Warning,
                  .buttons = {tr("OK")}});
    }
}

void MainViewModel::frameSelected(const CaptureFrame &frame)
{
    publish(currentFrame_, frame);
    // The selector closes when this returns, which tells the user that the area is saved. During a
    // session, frames must not wait for the disk.
    frameRepository_->save(frame, isSharingWindowOpen_ ? Pace::AtOnce : Pace::BeforeReturn);
    publish(isFrameSelectorOpen_, false);
}

void MainViewModel::frameSelectionCancelled()
{
    publish(isFrameSelectorOpen_, false);
}

void MainViewModel::updateFrame(const QString &x, const QString &y, const QString &width,
                                const QString &height)
{
    const auto newX = numberFromText(x);
    const auto newY = numberFromText(y);
    const auto newWidth = numberFromText(width);
    const auto newHeight = numberFromText(height);
    if (newX && newY && newWidth && newHeight) {
        publish(currentFrame_, CaptureFrame{*newX, *newY, *newWidth, *newHeight});
        frameRepository_->save(currentFrame_, Pace::WhenTypingRests);
    }
}

std::expected<void, Error> MainViewModel::setAreaSize(const AreaSize &size)
{
    const auto area = sized(currentFrame_, size, *backend_.displays);
    if (!area) {
        return std::unexpected(area.error());
    }
    useArea(*area);
    return {};
}

void MainViewModel::useArea(const CaptureFrame &area)
{
    publish(currentFrame_, area);
    frameRepository_->save(area, Pace::AtOnce);
}

// The sharing session lives as long as the output window: every way of ending it closes that
// window, and the window watch then stops the capture and clears the flag.

void MainViewModel::installSessionWatch()
{
    captureService_->setOnCaptureEnded([self = QPointer(this)](const Error &reason) {
        if (self) {
            self->handleCaptureEnded(reason);
        }
    });
    connect(&windowCheckTimer_, &QTimer::timeout, this, &MainViewModel::checkSharingWindow);
    windowCheckTimer_.setTimerType(Qt::PreciseTimer);
    windowCheckTimer_.start(windowCheckInterval);
}

QCoro::Task<> MainViewModel::startSharing()
{
    if (isCheckingPermission_ || isSharingWindowOpen_ || isFrameSelectorOpen_) {
        co_return;
    }
    setCheckingPermission(true);
    firstPause_.reset();
    const QPointer self(this);
    // The content itself is not used: the request fails if the screen may not be read.
    const auto content = co_await backend_.screen->shareableContent(rectOf(currentFrame_));
    if (!self) {
        co_return;
    }
    if (!setCheckingPermission(false)) {
        Q_EMIT startEnded(tr("Sharing was stopped before it started."));
    } else if (content) {
        openSharingWindow();
    } else {
        qCInfo(modelLog, "cannot share the screen: %s", qPrintable(content.error().log));
        Q_EMIT startEnded(content.error().text);
        showScreenRecordingPermissionAlert(content.error());
    }
}

/** Returns what it was before. */
bool MainViewModel::setCheckingPermission(bool isChecking)
{
    const bool before = std::exchange(isCheckingPermission_, isChecking);
    if (before != isChecking) {
        Q_EMIT startingChanged();
    }
    return before;
}

void MainViewModel::openSharingWindow()
{
    if (const auto flaw = flawOf(currentFrame_, *backend_.displays)) {
        captureStartFailed(*flaw);
        return;
    }
    publish(isSharingWindowOpen_, true);
    const auto window = windowCoordinator_->showSharingWindow(currentFrame_);
    session_.open(currentFrame_, window);
    if (const auto picture = std::exchange(firstPause_, std::nullopt)) {
        backend_.screen->withdrawRequest(); // it is asked for again when the pause ends
        session_.pause(*picture);
        Q_EMIT startEnded({});
    } else {
        runCapture(window);
    }
}

QCoro::Task<> MainViewModel::runCapture(std::shared_ptr<SharingWindow> window)
{
    // The session is destroyed before the service, whose end may complete the call.
    const QPointer session(&session_);
    const auto result = co_await captureService_->startCapture(currentFrame_, window);
    if (!session) {
        co_return;
    }
    if (result) {
        session_.started();
        Q_EMIT startEnded({});
    } else {
        captureStartFailed(result.error());
        windowCoordinator_->closeSharingWindow();
    }
}

void MainViewModel::captureStartFailed(const Error &reason)
{
    backend_.screen->withdrawRequest(); // what was granted is not needed any more
    Q_EMIT startEnded(reason.text);
    if (reason.outcome != Outcome::cancelled) {
        runModal({.messageText = tr("Screen Capture"),
                  .informativeText = tr("Failed to start capture: %1").arg(reason.text),
                  .style = Alert::Style::Warning,
                  .buttons = {tr("OK")}});
    }
    closeSession();
}

void MainViewModel::closeSession()
{
    session_.close();
    publish(isSharingWindowOpen_, false);
}

QCoro::Task<SharingSession::Result> MainViewModel::moveSharing(CaptureFrame frame, bool saves)
{
    const QPointer session(&session_);
    auto moved = co_await session_.move(frame);
    if (session && moved && saves) {
        publish(currentFrame_, frame);
        frameRepository_->save(frame, Pace::AtOnce);
    }
    co_return moved;
}

SharingSession::Result MainViewModel::pauseSharing(PausePicture picture)
{
    if (isCheckingPermission_) {
        firstPause_ = picture;
        return {};
    }
    return session_.pause(picture);
}

QCoro::Task<SharingSession::Result> MainViewModel::resumeSharing()
{
    if (isCheckingPermission_) {
        firstPause_.reset();
        co_return SharingSession::Result();
    }
    const QPointer session(&session_);
    auto resumed = co_await session_.resume();
    // A user who has declined can think again.
    if (session && !resumed && resumed.error().outcome != Outcome::cancelled) {
        const auto end = [this, error = resumed.error()] {
            if (isPaused() && windowCoordinator_->isSharingWindowVisible()) {
                handleCaptureEnded(error);
            }
        };
        QMetaObject::invokeMethod(this, end, Qt::QueuedConnection); // the caller hears of it first
    }
    co_return resumed;
}

void MainViewModel::displaysChanged()
{
    if (sharedFrame()) {
        Q_EMIT sharedFrameChanged();
    }
}

void MainViewModel::showScreenRecordingPermissionAlert(const Error &reason)
{
    if (reason.outcome == Outcome::impossible) {
        runModal(impossibleAlert(reason));
        return;
    }
    const int answer = runModal(permissionAlert(reason));
    if (answer == firstAlertButton && !backend_.shell->openPrivacySettings()) {
        runModal(settingsAlert(reason));
    }
}

bool MainViewModel::mayClose()
{
    const bool isShared = isSharingWindowOpen_ && windowCoordinator_->isSharingWindowVisible();
    if (!isShared && !isCheckingPermission_) {
        return true;
    }
    if (isAskingToClose_) {
        return false;
    }
    // Not counted in alertsUp_, so the window watch keeps running: the session may end meanwhile.
    isAskingToClose_ = true;
    const auto done = qScopeGuard([this] { isAskingToClose_ = false; });
    return alerts_.runModal(quitAlert()) == quitAlertButton;
}

void MainViewModel::tellOfFailure(const QString &text)
{
    // Not counted in alertsUp_, for the same reason.
    isTelling_ = true;
    const auto done = qScopeGuard([this] { isTelling_ = false; });
    alerts_.runModal({.messageText = tr("That Did Not Work"),
                      .informativeText = text,
                      .style = Alert::Style::Warning,
                      .buttons = {tr("OK")}});
}

int MainViewModel::runModal(const Alert &alert)
{
    ++alertsUp_;
    const auto done = qScopeGuard([this] { --alertsUp_; });
    return alerts_.runModal(alert);
}

QCoro::Task<> MainViewModel::checkForUpdates()
{
    if (!updateRepository_) {
        co_return;
    }
    if (!identity_.serialNumber) {
        printLine(QStringLiteral("Unable to get device serial number for update check"));
        co_return;
    }
    const QPointer self(this);
    isCheckingForUpdates_ = true;
    const auto answer
        = co_await updateRepository_->checkForUpdate(*identity_.serialNumber, identity_.appVersion);
    if (!self) {
        co_return;
    }
    isCheckingForUpdates_ = false;
    if (!answer) {
        printLine(QStringLiteral("Update check failed: ") + answer.error().log);
    } else if (answer->canUpdate) {
        showUpdateAlert(*answer, identity_.appVersion);
    }
}

void MainViewModel::showUpdateAlert(const UpdateInfo &info, const QString &currentVersion)
{
    const int answer = runModal(updateAlert(info, currentVersion));
    const QUrl url(info.downloadUrl, QUrl::StrictMode);
    if (answer == firstAlertButton && url.isValid() && !url.isRelative()) {
        backend_.shell->openUrl(url);
    }
}

void MainViewModel::stopSharing()
{
    if (isSharingWindowOpen_) {
        windowCoordinator_->closeSharingWindow();
    }
}

void MainViewModel::endSharing()
{
    if (setCheckingPermission(false)) {
        backend_.screen->withdrawRequest();
    }
    if (isSharingWindowOpen_) {
        windowCoordinator_->closeSharingWindow();
        captureService_->stopCapture();
        closeSession();
    }
}

void MainViewModel::checkSharingWindow()
{
    // The timer also fires in an alert's event loop, but then the code behind the alert ends the
    // session.
    if (!isSharingWindowOpen_ || alertsUp_ > 0 || windowCoordinator_->isSharingWindowVisible()) {
        return;
    }
    captureService_->stopCapture();
    closeSession();
}

void MainViewModel::handleCaptureEnded(const Error &reason)
{
    if (!isSharingWindowOpen_) {
        return;
    }
    windowCoordinator_->closeSharingWindow();
    closeSession();
    if (reason.outcome != Outcome::cancelled) {
        tellThatSharingEnded(reason.text);
    }
}

/** Also sends a notification, since the user is looking at the call rather than at our window. */
void MainViewModel::tellThatSharingEnded(const QString &reason)
{
    const QString title = tr("Sharing Has Ended");
    const QString text = tr("Others in your call no longer see the area. %1").arg(reason);
    backend_.shell->notify(title, text);
    runModal({.messageText = title,
              .informativeText = text,
              .style = Alert::Style::Warning,
              .buttons = {tr("OK")}});
}

} // namespace glimmerpane
