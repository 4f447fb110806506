// SPDX-License-Identifier: MIT
#pragma once

#include "platform/wayland/WaylandSession.h"
#include "wlr-screencopy-unstable-v1-client-protocol.h"

namespace glimmerpane::wayland
{

template<>
struct Destroy<wl_shm> {
    void operator()(wl_shm *it) const { wl_shm_destroy(it); }
};
template<>
struct Destroy<wl_shm_pool> {
    void operator()(wl_shm_pool *it) const { wl_shm_pool_destroy(it); }
};
template<>
struct Destroy<wl_buffer> {
    void operator()(wl_buffer *it) const { wl_buffer_destroy(it); }
};
template<>
struct Destroy<zwlr_screencopy_manager_v1> {
    void operator()(zwlr_screencopy_manager_v1 *it) const
    {
        zwlr_screencopy_manager_v1_destroy(it);
    }
};
template<>
struct Destroy<zwlr_screencopy_frame_v1> {
    void operator()(zwlr_screencopy_frame_v1 *it) const { zwlr_screencopy_frame_v1_destroy(it); }
};

} // namespace glimmerpane::wayland

namespace glimmerpane::wlroots
{

using wayland::Output;
using wayland::OutputState;
using wayland::WaylandObject;

/** A connection to the compositor and what copying its screen needs. Used by one thread. */
struct ScreencopySession {
    std::unique_ptr<wayland::WaylandSession> wayland; // destroyed last
    WaylandObject<zwlr_screencopy_manager_v1> screencopy;
    WaylandObject<wl_shm> sharedMemory;

    /** Fails if the compositor does not let its clients copy the screen. Waits for it. */
    static std::expected<ScreencopySession, Error> open();
};

} // namespace glimmerpane::wlroots
