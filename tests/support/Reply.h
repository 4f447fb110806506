// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>
#include <memory>

namespace glimmerpane::testing
{

struct FreeDeleter {
    void operator()(void *memory) const { std::free(memory); }
};

/** Owns what xcb allocates with malloc: replies, errors and events. */
template<typename T>
using Reply = std::unique_ptr<T, FreeDeleter>;

} // namespace glimmerpane::testing
