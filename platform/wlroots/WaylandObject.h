// SPDX-License-Identifier: MIT
#pragma once

#include "wlr-screencopy-unstable-v1-client-protocol.h"
#include "xdg-output-unstable-v1-client-protocol.h"
#include <wayland-client.h>

#include <memory>

namespace glimmerpane::wlroots
{

struct DestroyProxy {
    void operator()(wl_display *it) const { wl_display_disconnect(it); }
    void operator()(wl_registry *it) const { wl_registry_destroy(it); }
    void operator()(wl_output *it) const { wl_output_destroy(it); }
    void operator()(wl_shm *it) const { wl_shm_destroy(it); }
    void operator()(wl_shm_pool *it) const { wl_shm_pool_destroy(it); }
    void operator()(wl_buffer *it) const { wl_buffer_destroy(it); }
    void operator()(zxdg_output_manager_v1 *it) const { zxdg_output_manager_v1_destroy(it); }
    void operator()(zxdg_output_v1 *it) const { zxdg_output_v1_destroy(it); }
    void operator()(zwlr_screencopy_manager_v1 *it) const
    {
        zwlr_screencopy_manager_v1_destroy(it);
    }
    void operator()(zwlr_screencopy_frame_v1 *it) const { zwlr_screencopy_frame_v1_destroy(it); }
};

/** Owns a Wayland object of this client. The connection must outlive it. */
template<typename Proxy>
using WaylandObject = std::unique_ptr<Proxy, DestroyProxy>;

} // namespace glimmerpane::wlroots
