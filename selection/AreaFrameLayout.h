// SPDX-License-Identifier: MIT
#pragma once

#include "platform/AreaMarks.h"

#include <QRegion>

namespace glimmerpane
{

/** A shared area and what is around it, in desktop pixels. */
struct AreaFrameScene {
    QRect area;
    QRegion clear; ///< where nothing may be drawn: the area, and what may still be seen of others
    QRegion desktop; ///< the displays; nothing is drawn elsewhere
    double scale = 1; ///< pixels per point
    QColor color;
    bool hasHandle = true; ///< where there is room for one
};

/** A thin frame just outside the area, with a handle beside it that is wholly on the desktop. */
MarksPicture layOutFrame(const AreaFrameScene &scene);

} // namespace glimmerpane
