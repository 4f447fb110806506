// SPDX-License-Identifier: MIT
#include "platform/wlroots/ScreencopySession.h"

#include <utility>

namespace glimmerpane::wlroots
{

std::expected<ScreencopySession, Error> ScreencopySession::open()
{
    auto wayland = wayland::WaylandSession::open();
    if (!wayland) {
        return std::unexpected(wayland.error());
    }
    constexpr std::uint32_t version = 3; // which says when it has named all kinds of buffers
    ScreencopySession session{
        .wayland = std::move(*wayland), .screencopy = nullptr, .sharedMemory = nullptr};
    session.screencopy = session.wayland->bind<zwlr_screencopy_manager_v1>(
        zwlr_screencopy_manager_v1_interface, version);
    session.sharedMemory = session.wayland->bind<wl_shm>(wl_shm_interface, 1);
    if (!session.screencopy || !session.sharedMemory) {
        return std::unexpected(Error{
            .text = Error::tr("This Wayland compositor does not let programs read the screen."),
            .log = QStringLiteral("screencopy 3 is missing"),
            .outcome = Outcome::unavailable});
    }
    return session;
}

} // namespace glimmerpane::wlroots
