// SPDX-License-Identifier: MIT
#pragma once

#include "selection/ResizeHandler.h"

namespace glimmerpane
{

class OverlayWindow;

/** Sets the cursor that shows what a drag would do. */
class CursorManager
{
public:
    void setCursor(ResizeHandler::ResizeEdge edge, OverlayWindow &window) const;
};

} // namespace glimmerpane
