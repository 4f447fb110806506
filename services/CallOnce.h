// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <utility>

namespace glimmerpane
{

/** Calls a callback, if it is set, for the last time: it is emptied first, and may free its owner. */
inline void callOnce(std::function<void()> &callback)
{
    if (const auto call = std::exchange(callback, {})) {
        call();
    }
}

} // namespace glimmerpane
