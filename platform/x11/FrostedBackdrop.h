// SPDX-License-Identifier: MIT
#pragma once

#include "platform/OverlayWindow.h"
#include "platform/x11/Render.h"

namespace glimmerpane::x11
{

/**
 * What the screen shows at `area` (root pixels) behind frosted glass, in the screen's format. All
 * of it is made inside the server, by requests alone.
 */
Canvas frostedScreen(const Connection &connection, const RenderFormats &formats, QRect area,
                     const FrostedGlass &glass);

} // namespace glimmerpane::x11
