// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <pipewire/pipewire.h>

namespace glimmerpane::pipewire
{

/** PipeWire's libraries, while any of these exists. */
struct Library {
    Library() { pw_init(nullptr, nullptr); }
    Library(const Library &) = delete;
    Library &operator=(const Library &) = delete;
    Library(Library &&) = delete;
    Library &operator=(Library &&) = delete;
    ~Library() { pw_deinit(); }
};

/** The name of this program's nodes. */
inline constexpr const char *nodeName = "glimmerpane";

/** A handle of PipeWire that this function gives back. */
template<typename T, auto giveBack>
struct GiveBack {
    void operator()(T *handle) const { giveBack(handle); }
};
template<typename T, auto giveBack>
using Handle = std::unique_ptr<T, GiveBack<T, giveBack>>;

} // namespace glimmerpane::pipewire
