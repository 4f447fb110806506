// SPDX-License-Identifier: MIT
#include "platform/backends/NoScreenSource.h"

namespace glimmerpane
{

QCoro::Task<std::expected<ShareableContent, Error>> NoScreenSource::shareableContent(Rect /*area*/)
{
    co_return std::unexpected(Error{
        .text
        = Error::tr("This Wayland session offers none of the ways to record the screen: GNOME's "
                    "screen-cast service, wlr-screencopy 3 (as in sway), KWin's screencast, or a "
                    "desktop portal with ScreenCast. Install xdg-desktop-portal with the part for "
                    "this desktop, or log in to GNOME, KDE Plasma, sway or an X11 session."),
        .log = QStringLiteral("no back end works in this session"),
        .outcome = Outcome::impossible});
}

std::unique_ptr<CaptureStream> NoScreenSource::makeCaptureStream(
    const ContentFilter & /*filter*/, const StreamConfiguration & /*configuration*/)
{
    return nullptr;
}

} // namespace glimmerpane
