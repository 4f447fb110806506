// SPDX-License-Identifier: MIT
#include "model/MainViewModel.h"

#include "model/Log.h"
#include "model/NumberText.h"

#include <QPointer>
#include <QScopeGuard>

#include <algorithm>
#include <chrono>
#include <cmath>
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
constexpr qsizetype longestVersionShown = 60; ///< characters; the text comes from the service

Rect rectOf(const CaptureFrame &frame)
{
    return {.x = frame.x,
            .y = frame.y,
            .width = std::abs(frame.width),
            .height = std::abs(frame.height)};
}

bool isOnDisplay(const CaptureFrame &frame, const Displays &desktop)
{
    const auto displays = desktop.displays();
    if (displays.empty()) {
        return true; // the capture reports that itself
    }
    const MainDisplay main{.pixels = displays.front().pixels, .scale = desktop.scaleFactor()};
    const QRect area = main.areaPixels(rectOf(frame));
    return std::ranges::any_of(
        displays, [area](const Display &display) { return display.pixels.intersects(area); });
}

/** Why the area cannot be shared; null if it can. */
std::optional<QString> flawOf(const CaptureFrame &frame, const Displays &desktop)
{
    if (!std::isfinite(frame.width) || !std::isfinite(frame.height)) {
        return MainViewModel::tr("The area's width and height must be finite numbers.");
    }
    if (std::isnan(frame.x) || std::isnan(frame.y)) {
        return MainViewModel::tr("The area's X and Y must be numbers.");
    }
    const QSize size
        = toPixels(std::abs(frame.width), std::abs(frame.height), desktop.scaleFactor());
    if (size.isEmpty()) {
        return MainViewModel::tr("The area is empty. Its width and height must be at least 1.");
    }
    if (std::max(size.width(), size.height()) > desktop.largestWindowSide()) {
        return MainViewModel::tr("The area is too large. Each side can be at most %n pixels.",
                                 nullptr, desktop.largestWindowSide());
    }
    if (!isOnDisplay(frame, desktop)) {
        return MainViewModel::tr("The area is not on any display. Move it onto one.");
    }
    return std::nullopt;
}

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
{
    currentFrame_ = initialFrame();
    installSessionWatch();
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
    isCheckingPermission_ = true;
    const QPointer self(this);
    // The content itself is not used: the request fails if the screen may not be read.
    const auto content = co_await backend_.screen->shareableContent(rectOf(currentFrame_));
    if (!self) {
        co_return;
    }
    if (!std::exchange(isCheckingPermission_, false)) {
        Q_EMIT startEnded(tr("Sharing was stopped before it started."));
    } else if (content) {
        openSharingWindow();
    } else {
        qCInfo(modelLog, "cannot share the screen: %s", qPrintable(content.error().log));
        Q_EMIT startEnded(content.error().text);
        showScreenRecordingPermissionAlert(content.error());
    }
}

void MainViewModel::openSharingWindow()
{
    if (const auto flaw = flawOf(currentFrame_, *backend_.displays)) {
        captureStartFailed({.text = *flaw, .log = {}});
        return;
    }
    publish(isSharingWindowOpen_, true);
    runCapture(windowCoordinator_->showSharingWindow(currentFrame_));
}

QCoro::Task<> MainViewModel::runCapture(std::shared_ptr<SharingWindow> window)
{
    const QPointer self(this);
    const auto result = co_await captureService_->startCapture(currentFrame_, window);
    if (!self) {
        co_return;
    }
    if (result) {
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
    publish(isSharingWindowOpen_, false);
}

void MainViewModel::showScreenRecordingPermissionAlert(const Error &reason)
{
    const int answer = runModal(
        {.messageText = tr("Screen Recording Permission Required"),
         .informativeText = tr("Please grant Screen Recording permission in System Settings > "
                               "Privacy & Security > Screen Recording")
             + QStringLiteral("\n\n") + reason.text,
         .style = Alert::Style::Warning,
         .buttons = {tr("Open System Settings"), tr("Cancel")}});
    if (answer == firstAlertButton && !backend_.shell->openPrivacySettings()) {
        runModal({.messageText = tr("Screen Recording"),
                  .informativeText
                  = tr("Glimmerpane does not know the settings program of this desktop.")
                      + QStringLiteral("\n\n") + reason.text,
                  .style = Alert::Style::Warning,
                  .buttons = {tr("OK")}});
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
    constexpr int quit = 1; // not the default, in case Ctrl+W was a slip while typing
    return alerts_.runModal({.messageText = tr("Stop Sharing and Quit?"),
                             .informativeText = tr("Others in your call will no longer see the "
                                                   "shared area."),
                             .style = Alert::Style::Warning,
                             .buttons = {tr("Keep Sharing"), tr("Stop and Quit")},
                             .escapesToFirst = true})
        == quit;
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
    const int answer = runModal(
        {.messageText = tr("Update Available"),
         .informativeText = tr("Current version: %1\nNew version: %2")
                                .arg(currentVersion, info.lastAppVersion.left(longestVersionShown)),
         .style = Alert::Style::Informational,
         .buttons = {tr("Download New Version"), tr("Cancel")}});
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
    if (std::exchange(isCheckingPermission_, false)) {
        backend_.screen->withdrawRequest();
    }
    if (isSharingWindowOpen_) {
        windowCoordinator_->closeSharingWindow();
        captureService_->stopCapture();
        publish(isSharingWindowOpen_, false);
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
    publish(isSharingWindowOpen_, false);
}

void MainViewModel::handleCaptureEnded(const Error &reason)
{
    if (!isSharingWindowOpen_) {
        return;
    }
    windowCoordinator_->closeSharingWindow();
    publish(isSharingWindowOpen_, false);
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
