// SPDX-License-Identifier: MIT
#pragma once

namespace glimmerpane
{

/**
 * The capture area, in points, in desktop coordinates: the origin is the bottom-left corner of the
 * primary display and y grows upwards, so (x, y) is the bottom-left corner of the area.
 *
 * Values are not validated: a size may be zero, negative (its magnitude counts) or not finite.
 */
struct CaptureFrame {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    friend bool operator==(const CaptureFrame &, const CaptureFrame &) = default;
};

} // namespace glimmerpane
