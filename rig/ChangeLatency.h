// SPDX-License-Identifier: MIT
#pragma once

#include "rig/CapturedWindow.h"
#include "rig/Desktop.h"

#include <vector>

namespace glimmerpane::testing
{

struct LatencyOptions {
    xcb_window_t output = XCB_WINDOW_NONE;
    QRect area; ///< shared, root pixels
    QRect patch; ///< where to change the colour, root pixels, inside the area
    int changes = 100;
    /** Between two readings; reading without a pause keeps a processor busy. */
    std::chrono::microseconds pause{0};
    PictureOf source = PictureOf::Composite;
};

/**
 * Changes the colour of a small window and takes the time from the server's acknowledgement until
 * that colour is read from the output's picture. Milliseconds, one per change; the
 * changes are far enough apart that none waits for the one before.
 */
Result<std::vector<double>> measureLatency(const Desktop &desktop, const LatencyOptions &options);

} // namespace glimmerpane::testing
