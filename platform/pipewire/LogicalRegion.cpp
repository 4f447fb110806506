// SPDX-License-Identifier: MIT
#include "platform/pipewire/LogicalRegion.h"

#include <QRectF>

namespace glimmerpane::pipewire
{

LogicalRegion regionOf(QRect area, QRect pixels, QRect logical)
{
    const double scale
        = pixels.isEmpty() || logical.isEmpty() ? 1 : double(pixels.width()) / logical.width();
    const QPointF origin = QPointF(area.topLeft() - pixels.topLeft()) / scale + logical.topLeft();
    const QRect region = QRectF(origin, QSizeF(area.size()) / scale).toAlignedRect();
    // The units may be coarser than the pixels, so the region can be larger than the area.
    const QPointF inset = (origin - region.topLeft()) * scale;
    return {.logical = region, .scale = scale, .part = [=](QSize picture) {
                const double zoom = picture.width() / (region.width() * scale);
                return QRectF(inset * zoom, QSizeF(area.size()) * zoom).toRect();
            }};
}

} // namespace glimmerpane::pipewire
