// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QImage>
#include <QSize>

namespace glimmerpane
{

/** What the others see instead of a paused area: a text in the middle of a colour. */
struct PausePictureLook {
    QColor background;
    QImage text; ///< premultiplied ARGB
};

/** For a window of this size (pixels), in the user's language and the system's font. */
PausePictureLook pausePicture(QSize window);

} // namespace glimmerpane
