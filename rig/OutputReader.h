// SPDX-License-Identifier: MIT
#pragma once

#include "rig/CapturedWindow.h"

#include <chrono>

namespace glimmerpane::testing
{

/** The number of the animation that the window shows now; `place` is the strip's corner in it. */
Result<uint32_t> shownNumber(const CapturedWindow &window, QPoint place = {});

/** Returns once the window, or the whole screen, follows the animation. */
void awaitMotion(const CapturedWindow &window, QPoint place = {});

/** What a viewer saw of the numbered animation during a time. */
struct SeenFrames {
    double seconds = 0;
    int shown = 0; ///< different numbers read from the output
    int sent = 0; ///< numbers from the first to the last one seen

    int dropped() const { return sent - shown; }
    double rate() const { return seconds > 0 ? shown / seconds : 0; }
};

/** Reads the animation's number out of the window's picture once for each time it was drawn. */
SeenFrames countFrames(const QString &displayName, const CapturedWindow &window, QPoint place,
                       std::chrono::milliseconds time);

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
std::vector<double> measureLatency(const XClient &client, const LatencyOptions &options);

} // namespace glimmerpane::testing
