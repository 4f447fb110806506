// SPDX-License-Identifier: MIT
#pragma once

#include "bench/Measurement.h"
#include "rig/Program.h"

namespace glimmerpane::bench
{

/**
 * A fresh display on which Glimmerpane runs and the main window stands beside the area. The
 * pointer is inside the area.
 */
struct SharedDesktop {
    std::unique_ptr<Desktop> desktop;
    std::optional<Program> program{};
    xcb_window_t output = XCB_WINDOW_NONE; ///< none unless it shares from the start
};

Result<std::unique_ptr<Desktop>> startDesktop(const Measurement &measurement,
                                              bool compositor = false);

/** Starts Glimmerpane on the desktop; returns once it shares, if it is to share from the start. */
Result<void> startProgram(const Measurement &measurement, bool share, SharedDesktop &shared);

} // namespace glimmerpane::bench
