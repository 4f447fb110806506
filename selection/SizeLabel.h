// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Geometry.h"
#include "platform/OverlayWindow.h"

namespace glimmerpane
{

/**
 * Tells the size of an area (desktop pixels) in pixels: below it, or on the first of the sides
 * above, right and left where the display has room, or else at its bottom. Main thread.
 */
OverlayLabel sizeLabel(QRect area, const MainDisplay &display);

} // namespace glimmerpane
