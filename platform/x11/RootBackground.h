// SPDX-License-Identifier: MIT
#pragma once

#include "platform/x11/Render.h"

#include <QRegion>

#include <array>

namespace glimmerpane::x11
{

/** What lies behind all windows. */
class RootBackground
{
public:
    /** The connection must outlive the object. */
    RootBackground(const Connection &connection, const RenderFormats &formats);

    /** Whether the property of this name says which background there is. */
    bool isNamedBy(xcb_atom_t property) const;

    /**
     * Looks at what there is. `uncovered` (root pixels) is where no window lies: where nothing but
     * a compositor knows the background, that much of it is taken from the screen, once, and the
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
    std::array<xcb_atom_t, 2> names_{};
    Canvas canvas_; ///< what the picture shows unless somebody else has it
    bool isGuessed_ = false;
    Picture picture_;
};

} // namespace glimmerpane::x11
