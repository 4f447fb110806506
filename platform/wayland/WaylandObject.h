// SPDX-License-Identifier: MIT
#pragma once

#include "xdg-output-unstable-v1-client-protocol.h"
#include <wayland-client.h>

#include <memory>

namespace glimmerpane::wayland
{

/** Gives an object of one kind back; users of other protocols add theirs. */
template<typename Proxy>
struct Destroy;

template<>
struct Destroy<wl_display> {
    void operator()(wl_display *it) const { wl_display_disconnect(it); }
};
template<>
struct Destroy<wl_registry> {
    void operator()(wl_registry *it) const { wl_registry_destroy(it); }
};
template<>
struct Destroy<wl_output> {
    void operator()(wl_output *it) const { wl_output_destroy(it); }
};
template<>
struct Destroy<zxdg_output_manager_v1> {
    void operator()(zxdg_output_manager_v1 *it) const { zxdg_output_manager_v1_destroy(it); }
};
template<>
struct Destroy<zxdg_output_v1> {
    void operator()(zxdg_output_v1 *it) const { zxdg_output_v1_destroy(it); }
};

/** Owns a Wayland object of this client. The connection must outlive it. */
template<typename Proxy>
using WaylandObject = std::unique_ptr<Proxy, Destroy<Proxy>>;

} // namespace glimmerpane::wayland
