// SPDX-License-Identifier: MIT
#include "platform/x11/Scaling.h"

namespace glimmerpane::x11
{

Canvas makeSmoothCanvas(const Connection &connection, QSize size, std::uint8_t depth,
                        xcb_render_pictformat_t format)
{
    Canvas canvas = makeCanvas(connection, size, depth, format);
    const std::uint32_t pad = XCB_RENDER_REPEAT_PAD;
    xcb_render_change_picture(connection.get(), canvas.picture.get(), XCB_RENDER_CP_REPEAT, &pad);
    setBilinear(connection, canvas.picture);
    return canvas;
}

void compositeScaled(const Connection &connection, std::uint8_t operation, const Canvas &from,
                     double factor, QRect fromRect, const Canvas &to, QPoint toPoint)
{
    xcb_render_set_picture_transform(connection.get(), from.picture.get(),
                                     transform(1 / factor, 1 / factor, {}));
    composite(connection, operation, from.picture, fromRect, to.picture, toPoint);
}

Canvas screenshot(const Connection &connection, const RenderFormats &formats, QRect area)
{
    Canvas shot
        = makeSmoothCanvas(connection, area.size(), connection.screen().root_depth, formats.screen);
    const GraphicsContext graphics
        = makeGraphicsContext(connection, connection.root(), XCB_SUBWINDOW_MODE_INCLUDE_INFERIORS);
    xcb_copy_area(connection.get(), connection.root(), shot.pixmap.get(), graphics.get(),
                  coordinate(area.x()), coordinate(area.y()), 0, 0, extent(area.width()),
                  extent(area.height()));
    return shot;
}

} // namespace glimmerpane::x11
