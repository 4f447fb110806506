// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <optional>

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

/** One compact JSON object; every number reads back bit for bit. Null if a field is not finite. */
std::optional<QByteArray> toJson(const CaptureFrame &frame);

/** Null unless `json` is an object whose four members are numbers; other members are ignored. */
std::optional<CaptureFrame> captureFrameFromJson(const QByteArray &json);

} // namespace glimmerpane
