// SPDX-License-Identifier: MIT
#pragma once

#include <cstdio>
#include <cstdlib>

namespace glimmerpane::testing
{

/** Ends the process where `holds` is false, which the fuzzer reports together with its input. */
inline void require(bool holds, const char *what)
{
    if (!holds) {
        std::fprintf(stderr, "Does not hold: %s\n", what);
        std::abort();
    }
}

} // namespace glimmerpane::testing
