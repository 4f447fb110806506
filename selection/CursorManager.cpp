// SPDX-License-Identifier: MIT
#include "selection/CursorManager.h"

#include "platform/OverlayWindow.h"

namespace glimmerpane
{

namespace
{

Qt::CursorShape shapeFor(ResizeHandler::ResizeEdge edge)
{
    using enum ResizeHandler::ResizeEdge;
    switch (edge) {
    case none:
        return Qt::OpenHandCursor;
    case top:
    case bottom:
        return Qt::SizeVerCursor;
    case left:
    case right:
        return Qt::SizeHorCursor;
    default:
        return Qt::CrossCursor;
    }
}

} // namespace

void CursorManager::setCursor(ResizeHandler::ResizeEdge edge, OverlayWindow &window) const
{
    window.setCursor(shapeFor(edge));
}

} // namespace glimmerpane
