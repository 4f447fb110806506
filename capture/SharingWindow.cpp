// SPDX-License-Identifier: MIT
#include "capture/SharingWindow.h"

#include "platform/Desktop.h"

#include <algorithm>

namespace glimmerpane
{

SharingWindow::SharingWindow(Desktop &desktop, QSize size)
    : content_(desktop.makeOffscreenWindow(QStringLiteral("Glimmerpane - Output"),
                                           unseenOrigin(size), size))
{
    if (content_) {
        (*content_)->onCloseRequest = [this] { close(); };
    }
}

void SharingWindow::close()
{
    // The callback may release this window.
    if (const auto request = onCloseRequest) {
        request();
    }
}

void SharingWindow::orderFront()
{
    if (content_) {
        (*content_)->orderFront();
    }
}

void SharingWindow::orderOut()
{
    if (content_) {
        (*content_)->orderOut();
    }
}

bool SharingWindow::isVisible() const
{
    return content_ && (*content_)->isVisible();
}

void SharingWindow::setFrameOrigin(QPoint origin)
{
    if (content_) {
        (*content_)->setFrameOrigin(origin);
    }
}

std::expected<OffscreenWindow *, Error> SharingWindow::content() const
{
    if (!content_) {
        return std::unexpected(content_.error());
    }
    return content_->get();
}

QPoint unseenOrigin(QSize size)
{
    constexpr int faraway = -10000;
    // A window larger than that in both directions would reach onto the screen.
    const bool reachesScreen = std::min(size.width(), size.height()) > -faraway;
    return {faraway, reachesScreen ? -size.height() : faraway};
}

} // namespace glimmerpane
