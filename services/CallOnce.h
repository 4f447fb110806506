// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <utility>

namespace glimmerpane
{

/** Calls a callback, if set, for the last time. It is emptied first, so it may free its owner. */
inline void callOnce(std::function<void()> &callback)
{
    if (const auto call = std::exchange(callback, {})) {
        call();
    }
}

} // namespace glimmerpane
