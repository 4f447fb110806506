// SPDX-License-Identifier: MIT
#include "platform/x11/FrostedBackdrop.h"

#include <array>
#include <utility>
#include <vector>

namespace glimmerpane::x11
{

namespace
{

/** Draws and scales pictures of the screen's kind. */
class Workbench
{
public:
    Workbench(const Connection &connection, const RenderFormats &formats)
        : connection_(connection)
        , formats_(formats)
    {
    }

    Canvas canvas(QSize size) const
    {
        Canvas canvas
            = makeCanvas(connection_, size, connection_.screen().root_depth, formats_.screen);
        // Without it pixels on the border would be mixed with nothing, and come out dark.
        const std::uint32_t pad = XCB_RENDER_REPEAT_PAD;
        xcb_render_change_picture(connection_.get(), canvas.picture.get(), XCB_RENDER_CP_REPEAT,
                                  &pad);
        setBilinear(connection_, canvas.picture);
        return canvas;
    }

    Canvas screenshot(QRect area) const
    {
        Canvas shot = canvas(area.size());
        const GraphicsContext graphics(connection_, connection_.newId());
        const std::array<std::uint32_t, 2> values{XCB_SUBWINDOW_MODE_INCLUDE_INFERIORS, 0};
        xcb_create_gc(connection_.get(), graphics.get(), connection_.root(),
                      XCB_GC_SUBWINDOW_MODE | XCB_GC_GRAPHICS_EXPOSURES, values.data());
        xcb_copy_area(connection_.get(), connection_.root(), shot.pixmap.get(), graphics.get(),
                      coordinate(area.x()), coordinate(area.y()), 0, 0, extent(area.width()),
                      extent(area.height()));
        return shot;
    }

    Canvas scaled(const Canvas &from, QSize size) const
    {
        Canvas to = canvas(size);
        xcb_render_set_picture_transform(connection_.get(), from.picture.get(),
                                         transform(double(from.size.width()) / size.width(),
                                                   double(from.size.height()) / size.height(), {}));
        composite(connection_, XCB_RENDER_PICT_OP_SRC, from.picture, {QPoint(), size}, to.picture,
                  {});
        xcb_render_set_picture_transform(connection_.get(), from.picture.get(),
                                         transform(1, 1, {}));
        return to;
    }

    void fill(const Canvas &canvas, const xcb_render_color_t &color) const
    {
        const xcb_rectangle_t whole{0, 0, extent(canvas.size.width()),
                                    extent(canvas.size.height())};
        xcb_render_fill_rectangles(connection_.get(), XCB_RENDER_PICT_OP_OVER, canvas.picture.get(),
                                   color, 1, &whole);
    }

private:
    const Connection &connection_;
    const RenderFormats &formats_;
};

QSize halved(QSize size)
{
    return {(size.width() + 1) / 2, (size.height() + 1) / 2};
}

} // namespace

Canvas frostedScreen(const Connection &connection, const RenderFormats &formats, QRect area,
                     const FrostedGlass &glass)
{
    const Workbench bench(connection, formats);
    const Canvas sharp = bench.screenshot(area);
    // Halving mixes four pixels into one and doubling spreads each over its neighbours, so going
    // down and up again blurs by about the size that a pixel has at the bottom.
    std::vector<Canvas> levels;
    levels.push_back(bench.scaled(sharp, halved(area.size())));
    for (int radius = 4; radius <= glass.blurRadius; radius *= 2) {
        levels.push_back(bench.scaled(levels.back(), halved(levels.back().size)));
    }
    while (levels.size() > 1) {
        const Canvas small = std::move(levels.back());
        levels.pop_back();
        levels.back() = bench.scaled(small, levels.back().size);
    }
    Canvas frosted = bench.scaled(levels.back(), area.size());
    bench.fill(frosted, renderColor(glass.tint, glass.tintStrength));
    compositeFaded(connection, sharp.picture, {QPoint(), area.size()}, 1 - glass.opacity,
                   frosted.picture, {});
    return frosted;
}

} // namespace glimmerpane::x11
