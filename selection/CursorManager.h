// SPDX-License-Identifier: MIT
#pragma once

#include "selection/ResizeHandler.h"

namespace glimmerpane
{

class OverlayWindow;

/** Shows by the cursor what a drag would do. */
class CursorManager
{
public:
    void setCursor(ResizeHandler::ResizeEdge edge, OverlayWindow &window) const;
};

} // namespace glimmerpane
