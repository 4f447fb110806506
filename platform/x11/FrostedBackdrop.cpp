// SPDX-License-Identifier: MIT
#include "platform/x11/FrostedBackdrop.h"

#include "platform/x11/Scaling.h"

#include <utility>

namespace glimmerpane::x11
{

namespace
{

/**
 * The size of a pixel at the coarsest level. Halving mixes four pixels into one and doubling
 * spreads each over its neighbours, so going down and up again blurs by about this size.
 */
int coarsest(const FrostedGlass &glass)
{
    int size = 2;
    while (2 * size <= glass.blurRadius) {
        size *= 2;
    }
    return size;
}

/**
 * Enlarged to whole pixels of the coarsest level, so that the same pixels are mixed whichever part
 * is drawn.
 */
QRect aligned(QRect rectangle, int grid)
{
    const auto down = [grid](int value) { return value & -grid; };
    const QPoint from(down(rectangle.left()), down(rectangle.top()));
    const QPoint to(down(rectangle.right()) + grid, down(rectangle.bottom()) + grid);
    return {from, QSize(to.x() - from.x(), to.y() - from.y())};
}

} // namespace

FrostedBackdrop::FrostedBackdrop(const Connection &connection, const Extensions &extensions,
                                 const RenderFormats &formats, xcb_window_t top, QRect area,
                                 const FrostedGlass &glass)
    : connection_(connection)
    , formats_(formats)
    , glass_(glass)
    , area_(area)
    , source_(connection, extensions, formats, top)
    , canvas_(makeCanvas(connection, area.size(), connection.screen().root_depth, formats.screen))
{
    draw(area_);
}

bool FrostedBackdrop::mayBeOld(QRect window) const
{
    return source_.mayHaveChanged(reach(window));
}

QRect FrostedBackdrop::renew(QRect window)
{
    const QRegion changes = source_.takeChanges(reach(window));
    const QRect old = changes.isEmpty() ? QRect() : reach(changes.boundingRect()) & area_;
    if (!old.isEmpty()) {
        draw(old);
    }
    return old;
}

/**
 * Enlarged by how far a pixel spreads, which is also how far away the pixels are that reach into
 * it.
 */
QRect FrostedBackdrop::reach(QRect place) const
{
    const int reach = 2 * coarsest(glass_);
    return place.adjusted(-reach, -reach, reach, reach);
}

void FrostedBackdrop::draw(QRect part)
{
    const int grid = coarsest(glass_);
    // Starts on the grid, as the root does.
    const QRect wanted = aligned(reach(part), grid) & connection_.rootRectangle();
    const auto canvas = [&](QSize size) {
        return makeSmoothCanvas(connection_, size, connection_.screen().root_depth,
                                formats_.screen);
    };
    const auto scale = [&](const Canvas &from, double factor, QSize size) {
        Canvas to = canvas(size);
        compositeScaled(connection_, XCB_RENDER_PICT_OP_SRC, from, factor, {QPoint(), size}, to,
                        {});
        return to;
    };
    Canvas picture = canvas(wanted.size());
    source_.draw(picture, wanted);
    QSize size = aligned(wanted, grid).size();
    for (int coarse = 2; coarse <= grid; coarse *= 2) {
        size /= 2;
        picture = scale(picture, 0.5, size);
    }
    for (int coarse = grid; coarse > 2; coarse /= 2) {
        size *= 2;
        picture = scale(picture, 2, size);
    }
    const QRect place = part.translated(-area_.topLeft());
    compositeScaled(connection_, XCB_RENDER_PICT_OP_SRC, picture, 2,
                    part.translated(-wanted.topLeft()), canvas_, place.topLeft());
    const xcb_rectangle_t tinted = rectangleOf(place);
    xcb_render_fill_rectangles(connection_.get(), XCB_RENDER_PICT_OP_OVER, canvas_.picture.get(),
                               renderColor(glass_.tint, glass_.strength), 1, &tinted);
}

} // namespace glimmerpane::x11
