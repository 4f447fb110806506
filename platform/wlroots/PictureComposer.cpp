// SPDX-License-Identifier: MIT
#include "platform/wlroots/PictureComposer.h"

#include <QPainter>
#include <QTransform>

#include <algorithm>

namespace glimmerpane::wlroots
{

namespace
{

/** Turns an output's pixels the way that people see them. */
QImage upright(const QImage &image, std::int32_t transform)
{
    // Numbers 1 to 3 count turns of 90 degrees, 4 to 7 the same after a reflection.
    constexpr std::int32_t reflection = WL_OUTPUT_TRANSFORM_FLIPPED;
    QTransform back;
    if (transform >= reflection) {
        back.scale(-1, 1);
    }
    back.rotate(90.0 * (transform % reflection)); // carried out before the reflection
    return back.isIdentity() ? image : image.transformed(back);
}

/** The part's latest picture, upright. */
QImage pictureOf(const OutputCapture &part)
{
    const auto &source = part.source();
    if (!source.isTurned()) {
        return part.image();
    }
    const QImage whole = upright(part.image(), source.state.transform);
    const QSize logical = source.state.logical.size();
    const double across = double(whole.width()) / logical.width();
    const double down = double(whole.height()) / logical.height();
    return whole.copy(QRectF(source.part.x() * across, source.part.y() * down,
                             source.part.width() * across, source.part.height() * down)
                          .toRect());
}

QRect placeIn(QRect area, const OutputCapture &part)
{
    return part.source().place().translated(-area.topLeft());
}

} // namespace

MappedPixels PictureComposer::compose(QRect area,
                                      const std::vector<std::unique_ptr<OutputCapture>> &parts)
{
    const auto canvas = freeCanvas(area.size());
    canvas->fill(Qt::black);
    QPainter painter(canvas.get());
    for (const auto &part : parts) {
        if (part->hasPicture()) {
            painter.drawImage(placeIn(area, *part), pictureOf(*part));
        }
    }
    painter.end();
    return {.data = reinterpret_cast<const std::byte *>(canvas->constBits()),
            .stride = canvas->bytesPerLine(),
            .size = canvas->size(),
            .owner = canvas};
}

std::shared_ptr<QImage> PictureComposer::freeCanvas(QSize size)
{
    std::erase_if(canvases_, [&](const auto &canvas) { return canvas->size() != size; });
    const auto free = std::ranges::find_if(
        canvases_, [](const auto &canvas) { return canvas.use_count() == 1; });
    return free != canvases_.end()
        ? *free
        : canvases_.emplace_back(std::make_shared<QImage>(size, QImage::Format_RGB32));
}

QRegion composedRegion(const OutputCapture &part, const QRegion &changes, QRect area)
{
    const QRect place = placeIn(area, part);
    const OutputState &state = part.source().state;
    if (part.source().isTurned() || state.pixels != state.logical.size()) {
        return changes.isEmpty() ? QRegion() : QRegion(place);
    }
    return changes.translated(place.topLeft());
}

} // namespace glimmerpane::wlroots
