// SPDX-License-Identifier: MIT
#pragma once

#include "rig/CapturedWindow.h"
#include "rig/Desktop.h"

namespace glimmerpane::testing
{

/** What a viewer saw of the numbered animation during a time. */
struct SeenFrames {
    double seconds = 0;
    int shown = 0; ///< different numbers read from the output
    int sent = 0; ///< numbers from the first to the last one seen
    int unreadable = 0; ///< readings without a number

    int dropped() const { return sent - shown; }
    double rate() const { return seconds > 0 ? shown / seconds : 0; }
};

/**
 * Reads the animation's number out of the window's picture, once each time the window
 * was drawn into. `place` is the number strip's corner in the window.
 */
Result<SeenFrames> countFrames(const Desktop &desktop, const CapturedWindow &output, QPoint place,
                               std::chrono::milliseconds time);

/** The number that the window shows now. */
Result<uint32_t> shownNumber(const CapturedWindow &output, QPoint place);

} // namespace glimmerpane::testing
