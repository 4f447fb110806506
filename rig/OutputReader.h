// SPDX-License-Identifier: MIT
#pragma once

#include "rig/CapturedWindow.h"

#include <chrono>

namespace glimmerpane::testing
{

/** The animation's number that the window shows now; `place` is the strip's corner in it. */
Result<uint32_t> shownNumber(const CapturedWindow &window, QPoint place = {});

/** Returns once the window, or the whole screen, shows the running animation. */
void awaitMotion(const CapturedWindow &window, QPoint place = {});

/** What a viewer saw of the numbered animation over a period. */
struct SeenFrames {
    double seconds = 0;
    int shown = 0; ///< different numbers read from the output
    int sent = 0; ///< numbers from the first to the last one seen

    int dropped() const { return sent - shown; }
    double rate() const { return seconds > 0 ? shown / seconds : 0; }
};

/** Reads the animation's number from the window's picture each time that was drawn. */
SeenFrames countFrames(const QString &displayName, const CapturedWindow &window, QPoint place,
                       std::chrono::milliseconds time);

struct LatencyOptions {
    xcb_window_t output = XCB_WINDOW_NONE;
    QRect area; ///< shared, root pixels
    QRect patch; ///< where to change the colour, root pixels, inside the area
    int changes = 100;
    /** The pause between two readings; without one, reading keeps a processor busy. */
    std::chrono::microseconds pause{0};
    PictureOf source = PictureOf::Composite;
};

/**
 * Changes the colour of a small window and measures the time from the server's acknowledgement
 * until that colour is read from the output's picture. One value per change, in milliseconds; the
 * changes are far enough apart that none waits for the previous one.
 */
std::vector<double> measureLatency(const XClient &client, const LatencyOptions &options);

} // namespace glimmerpane::testing
