// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>
#include <memory>

namespace glimmerpane::x11
{

struct FreeReply {
    void operator()(void *reply) const { std::free(reply); }
};

/** A reply, event or error of the X server. */
template<typename T>
using Reply = std::unique_ptr<T, FreeReply>;

} // namespace glimmerpane::x11
