// SPDX-License-Identifier: MIT
#pragma once

#include "platform/x11/Render.h"

namespace glimmerpane::x11
{

/**
 * A canvas that can be scaled smoothly: pixels are interpolated, and those at its border extend
 * beyond it.
 */
Canvas makeSmoothCanvas(const Connection &connection, QSize size, std::uint8_t depth,
                        xcb_render_pictformat_t format);

/** Like composite(), from the canvas scaled by `factor`; `fromRect` is in scaled pixels. */
void compositeScaled(const Connection &connection, std::uint8_t operation, const Canvas &from,
                     double factor, QRect fromRect, const Canvas &to, QPoint toPoint);

/** The screen's content in this rectangle (root pixels). */
Canvas screenshot(const Connection &connection, const RenderFormats &formats, QRect area);

} // namespace glimmerpane::x11
