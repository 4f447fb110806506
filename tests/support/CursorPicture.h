// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/XClient.h"

namespace glimmerpane::testing
{

/** The pointer as the display shows it. */
struct CursorPicture {
    QImage image; ///< Format_ARGB32_Premultiplied
    QPoint hotspot; ///< in the image
    QPoint position; ///< of the hotspot, root pixels
    uint32_t serial = 0; ///< the server's number of this image
    QString name; ///< such as "left_ptr", empty if the server knows none

    /** Where its image lies on the root. */
    QRect rectangle() const { return {position - hotspot, image.size()}; }
};

Result<CursorPicture> currentCursor(const XClient &client);

/**
 * The picture with the pointer painted over it, rounded exactly as the server's Render extension
 * rounds. `origin` is the root position of the picture's top-left pixel.
 */
QImage withCursor(const QImage &picture, QPoint origin, const CursorPicture &cursor);

} // namespace glimmerpane::testing
