// SPDX-License-Identifier: MIT
#pragma once

#include "platform/x11/Render.h"

#include <QRegion>

namespace glimmerpane::x11
{

/** The background behind all windows. */
class RootBackground
{
public:
    /** The connection must outlive this object. */
    RootBackground(const Connection &connection, const RenderFormats &formats);

    /** Whether the property with this name defines the background. */
    bool isNamedBy(xcb_atom_t property) const;

    /**
     * Fetches the current background. `uncovered` (root pixels) is the region without windows: if
     * only a compositor knows the background, that part is taken from the screen, once, and the
     * rest is guessed. Waits for the server.
     */
    void renew(const QRegion &uncovered);

    /** In root pixels. */
    const Picture &picture() const { return picture_; }

private:
    Picture namedPixmap() const;
    void paintOwn();
    void guess(const QRegion &uncovered);
    Canvas halved(const Canvas &from) const;

    const Connection &connection_;
    const RenderFormats formats_;
    const QSize size_;
    Canvas canvas_; ///< holds the picture unless another client does
    bool isGuessed_ = false;
    Picture picture_;
};

} // namespace glimmerpane::x11
