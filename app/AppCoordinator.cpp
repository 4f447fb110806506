// SPDX-License-Identifier: MIT
#include "app/AppCoordinator.h"

#include "capture/SharingWindow.h"
#include "platform/Desktop.h"

#include <cmath>
#include <utility>

namespace glimmerpane
{

AppCoordinator::AppCoordinator(Desktop &desktop)
    : desktop_(desktop)
{
}

void AppCoordinator::showFrameSelector(std::optional<CaptureFrame> /*initialFrame*/,
                                       FrameHandler /*onConfirm*/, Handler onCancel)
{
    // There is no selector window; for the caller it has been closed without a choice.
    onCancel();
}

void AppCoordinator::closeFrameSelector() { }

std::shared_ptr<SharingWindow> AppCoordinator::showSharingWindow(const CaptureFrame &frame)
{
    const QSize size
        = toPixels(std::abs(frame.width), std::abs(frame.height), desktop_.scaleFactor());
    auto window = std::make_shared<SharingWindow>(desktop_, size);
    window->onCloseRequest = [weak = std::weak_ptr(window)] {
        if (const auto asked = weak.lock()) {
            asked->orderOut();
        }
    };
    sharingWindow_ = window;
    window->orderFront();
    window->setFrameOrigin(unseenOrigin(size));
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

} // namespace glimmerpane
