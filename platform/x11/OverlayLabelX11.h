// SPDX-License-Identifier: MIT
#pragma once

#include "platform/OverlayWindow.h"
#include "platform/x11/Connection.h"
#include "platform/x11/OverlayStacking.h"
#include "platform/x11/Render.h"
#include "platform/x11/ServerId.h"

namespace glimmerpane::x11
{

/** An overlay's label: a window that takes no pointer. Main thread. */
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
    bool isShown_ = false;
    qint64 key_ = 0; ///< of the picture
};

} // namespace glimmerpane::x11
