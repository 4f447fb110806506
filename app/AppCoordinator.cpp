// SPDX-License-Identifier: MIT
#include "app/AppCoordinator.h"

#include "app/WindowLifecycleDelegate.h"
#include "capture/SharingWindow.h"
#include "selection/FrameSelectorWindow.h"

#include <QPointer>

#include <cmath>
#include <utility>

namespace glimmerpane
{

AppCoordinator::AppCoordinator(Backend backend, Handler onOutputActivated)
    : backend_(std::move(backend))
    , onOutputActivated_(std::move(onOutputActivated))
{
}

AppCoordinator::~AppCoordinator() = default;

std::expected<void, Error> AppCoordinator::showFrameSelector(
    std::optional<CaptureFrame> initialFrame, FrameHandler onConfirm, Handler onCancel)
{
    using Controller = FrameSelectorWindowController;
    const auto controller = initialFrame
        ? std::make_shared<Controller>(backend_,
                                       Rect{.x = initialFrame->x,
                                            .y = initialFrame->y,
                                            .width = initialFrame->width,
                                            .height = initialFrame->height})
        : std::make_shared<Controller>(backend_);
    const QPointer self(this);
    const auto delegate = std::make_shared<WindowLifecycleDelegate>([self, onCancel] {
        if (self) {
            self->closeFrameSelector();
        }
        onCancel();
    });
    controller->onWillClose = [weak = std::weak_ptr(delegate)] {
        if (const auto told = weak.lock()) {
            told->windowWillClose();
        }
    };
    controller->onConfirm = [self, onConfirm](const Rect &frame) {
        onConfirm({.x = frame.x, .y = frame.y, .width = frame.width, .height = frame.height});
        if (self) {
            self->closeFrameSelector();
        }
    };
    frameSelectorController_ = controller;
    frameSelectorDelegate_ = delegate;
    if (controller->opened()) {
        controller->showWindow();
    } else {
        delegate->windowWillClose(); // it never opened, but the caller waits for this
    }
    return controller->opened();
}

void AppCoordinator::closeFrameSelector()
{
    frameSelectorDelegate_.reset();
    if (const auto controller = std::exchange(frameSelectorController_, nullptr)) {
        controller->onWillClose = {};
        controller->close();
    }
}

std::shared_ptr<SharingWindow> AppCoordinator::showSharingWindow(const CaptureFrame &frame)
{
    const Rect points{.x = frame.x,
                      .y = frame.y,
                      .width = std::abs(frame.width),
                      .height = std::abs(frame.height)};
    const auto main = backend_.displays->mainDisplay();
    auto window = std::make_shared<SharingWindow>(*backend_.outputWindows,
                                                  main ? main->areaPixels(points) : QRect());
    window->onCloseRequest = [weak = std::weak_ptr(window)] {
        if (const auto asked = weak.lock()) {
            asked->orderOut();
        }
    };
    window->onActivated = onOutputActivated_;
    window->onWatchedChanged = onWatchedChanged_;
    sharingWindow_ = window;
    window->orderFront();
    return window;
}

void AppCoordinator::closeSharingWindow()
{
    if (const auto window = std::exchange(sharingWindow_, nullptr)) {
        window->orderOut();
    }
}

bool AppCoordinator::isSharingWindowVisible() const
{
    return sharingWindow_ && sharingWindow_->isVisible();
}

std::optional<bool> AppCoordinator::isSharingWindowWatched() const
{
    return sharingWindow_ ? sharingWindow_->isWatched() : std::nullopt;
}

} // namespace glimmerpane
