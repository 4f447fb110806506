// SPDX-License-Identifier: MIT
#pragma once

#include "platform/OverlayWindow.h"
#include "platform/x11/Connection.h"
#include "platform/x11/OverlayStacking.h"
#include "platform/x11/Render.h"
#include "platform/x11/ServerId.h"

namespace glimmerpane::x11
{

/**
 * An overlay's label: a window that takes no pointer. It is always mapped, but off the screen while
 * it is hidden: picom at times does not draw a window that is mapped as it gets its size.
 */
class OverlayLabelX11
{
public:
    /** Hidden. The connection must outlive this object. */
    OverlayLabelX11(const Connection &connection, const RenderFormats &formats);

    /** Hides it if there is no picture. */
    void show(const OverlayLabel &label);
    /** Keeps it above an overlay that has just been restacked. */
    void restack(const OverlayStacking &stacking) const;

private:
    void paint(const QImage &picture);

    const Connection &connection_;
    const RenderFormats formats_;
    Window window_;
    qint64 key_ = 0; ///< of the picture
};

} // namespace glimmerpane::x11
