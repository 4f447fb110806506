// SPDX-License-Identifier: MIT
#pragma once

#include "platform/x11/Render.h"

namespace glimmerpane::x11
{

/**
 * A canvas that can be scaled smoothly: between its pixels they are mixed, and beyond its border
 * lies what is on it.
 */
Canvas makeSmoothCanvas(const Connection &connection, QSize size, std::uint8_t depth,
                        xcb_render_pictformat_t format);

/** As composite(), from the canvas scaled by `factor`; `fromRect` is in its pixels after that. */
void compositeScaled(const Connection &connection, std::uint8_t operation, const Canvas &from,
                     double factor, QRect fromRect, const Canvas &to, QPoint toPoint);

/** What the screen shows at this rectangle (root pixels). */
Canvas screenshot(const Connection &connection, const RenderFormats &formats, QRect area);

} // namespace glimmerpane::x11
