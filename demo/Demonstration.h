// SPDX-License-Identifier: MIT
#pragma once

#include "rig/OutputReader.h"

#include <stop_token>

namespace glimmerpane::demo
{

struct Outcome {
    testing::SeenFrames frames;
    std::vector<double> latencies; ///< milliseconds
};

/**
 * Shows on a private display that the program works: shares an area in which numbers move, looks
 * at the result as a viewer does, and leaves pictures of it in the current folder. Throws a
 * Failure if the viewer's picture is not exactly the area's, or if anything takes too long.
 */
Outcome demonstrate(const QString &program, const std::stop_token &stop);

} // namespace glimmerpane::demo
