// SPDX-License-Identifier: MIT
#include "capture/SharingWindow.h"

namespace glimmerpane
{

SharingWindow::SharingWindow(OutputWindows &windows, QRect area)
    : size_(area.size())
    , content_(windows.make(QStringLiteral("Glimmerpane - Output"), area))
{
    if (content_) {
        (*content_)->onCloseRequest = [this] { close(); };
        (*content_)->onActivated = [this] {
            if (onActivated) {
                onActivated();
            }
        };
        (*content_)->onWatchedChanged = [this] {
            if (onWatchedChanged) {
                onWatchedChanged();
            }
        };
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

std::optional<bool> SharingWindow::isWatched() const
{
    return content_ ? (*content_)->isWatched() : std::nullopt;
}

std::expected<OutputWindow *, Error> SharingWindow::content() const
{
    if (!content_) {
        return std::unexpected(content_.error());
    }
    return content_->get();
}

} // namespace glimmerpane
