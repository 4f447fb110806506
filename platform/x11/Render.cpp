// SPDX-License-Identifier: MIT
#include "platform/x11/Render.h"

#include <xcb/xcb_renderutil.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace glimmerpane::x11
{

std::expected<RenderFormats, Error> renderFormats(const Connection &connection)
{
    const auto *all = xcb_render_util_query_formats(connection.get());
    const auto *screen = xcb_render_util_find_visual_format(all, connection.screen().root_visual);
    const auto *argb = xcb_render_util_find_standard_format(all, XCB_PICT_STANDARD_ARGB_32);
    RenderFormats formats;
    if (screen != nullptr && argb != nullptr) {
        formats = {.screen = screen->format, .argb = argb->id};
    }
    // The library caches the reply for each connection until told otherwise.
    xcb_render_util_disconnect(connection.get());
    if (formats.screen == 0) {
        return std::unexpected(
            Error{.text = Error::tr("The X server cannot draw pictures in the screen's format."),
                  .log = QStringLiteral("no RENDER format for the root's visual")});
    }
    return formats;
}

std::map<xcb_visualid_t, xcb_render_pictformat_t> visualFormats(const Connection &connection)
{
    std::map<xcb_visualid_t, xcb_render_pictformat_t> formats;
    const auto *all = xcb_render_util_query_formats(connection.get());
    auto screens = xcb_render_query_pict_formats_screens_iterator(all);
    for (; screens.rem > 0; xcb_render_pictscreen_next(&screens)) {
        auto depths = xcb_render_pictscreen_depths_iterator(screens.data);
        for (; depths.rem > 0; xcb_render_pictdepth_next(&depths)) {
            auto visuals = xcb_render_pictdepth_visuals_iterator(depths.data);
            for (; visuals.rem > 0; xcb_render_pictvisual_next(&visuals)) {
                formats[visuals.data->visual] = visuals.data->format;
            }
        }
    }
    xcb_render_util_disconnect(connection.get());
    return formats;
}

Canvas makeCanvas(const Connection &connection, QSize size, std::uint8_t depth,
                  xcb_render_pictformat_t format)
{
    const auto pixmap = connection.newId();
    xcb_create_pixmap(connection.get(), depth, pixmap, connection.root(), extent(size.width()),
                      extent(size.height()));
    const auto picture = connection.newId();
    xcb_render_create_picture(connection.get(), picture, pixmap, format, 0, nullptr);
    return {.size = size,
            .pixmap = Pixmap(connection, pixmap),
            .picture = Picture(connection, picture)};
}

Canvas uploadImage(const Connection &connection, const RenderFormats &formats, const QImage &image)
{
    constexpr std::uint8_t depth = 32;
    Canvas canvas = makeCanvas(connection, image.size(), depth, formats.argb);
    const GraphicsContext graphics = makeGraphicsContext(connection, canvas.pixmap.get());
    xcb_put_image(connection.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, canvas.pixmap.get(), graphics.get(),
                  extent(image.width()), extent(image.height()), 0, 0, 0, depth,
                  static_cast<std::uint32_t>(image.sizeInBytes()), image.constBits());
    return canvas;
}

void copyArea(const Connection &connection, xcb_gcontext_t context, xcb_drawable_t from, QRect part,
              xcb_drawable_t to, QPoint at)
{
    xcb_copy_area(connection.get(), from, to, context, coordinate(part.x()), coordinate(part.y()),
                  coordinate(at.x()), coordinate(at.y()), extent(part.width()),
                  extent(part.height()));
}

void composite(const Connection &connection, std::uint8_t operation, const Picture &from,
               QRect fromRect, const Picture &to, QPoint toPoint)
{
    xcb_render_composite(connection.get(), operation, from.get(), XCB_RENDER_PICTURE_NONE, to.get(),
                         coordinate(fromRect.x()), coordinate(fromRect.y()), 0, 0,
                         coordinate(toPoint.x()), coordinate(toPoint.y()), extent(fromRect.width()),
                         extent(fromRect.height()));
}

void compositeFaded(const Connection &connection, const Picture &from, QRect fromRect,
                    double opacity, const Picture &to, QPoint toPoint)
{
    const Picture mask(connection, connection.newId());
    xcb_render_create_solid_fill(connection.get(), mask.get(), renderColor(Qt::black, opacity));
    xcb_render_composite(connection.get(), XCB_RENDER_PICT_OP_OVER, from.get(), mask.get(),
                         to.get(), coordinate(fromRect.x()), coordinate(fromRect.y()), 0, 0,
                         coordinate(toPoint.x()), coordinate(toPoint.y()), extent(fromRect.width()),
                         extent(fromRect.height()));
}

xcb_render_color_t renderColor(const QColor &color, double alpha)
{
    const auto channel = [alpha](double value) {
        return static_cast<std::uint16_t>(std::clamp(value * alpha, 0.0, 1.0) * 0xffff);
    };
    return {channel(color.redF()), channel(color.greenF()), channel(color.blueF()), channel(1)};
}

xcb_render_transform_t transform(double scaleX, double scaleY, QPoint offset)
{
    const auto fixed = [](double value) { return static_cast<xcb_render_fixed_t>(value * 65536); };
    return {fixed(scaleX), 0, fixed(offset.x()), 0, fixed(scaleY), fixed(offset.y()), 0, 0,
            fixed(1)};
}

void setBilinear(const Connection &connection, const Picture &picture)
{
    constexpr std::string_view filter = "bilinear";
    xcb_render_set_picture_filter(connection.get(), picture.get(), filter.size(), filter.data(), 0,
                                  nullptr);
}

GraphicsContext makeGraphicsContext(const Connection &connection, xcb_drawable_t drawable,
                                    xcb_subwindow_mode_t subwindowMode)
{
    GraphicsContext graphics(connection, connection.newId());
    const std::array<std::uint32_t, 3> values{connection.screen().black_pixel, subwindowMode, 0};
    xcb_create_gc(connection.get(), graphics.get(), drawable,
                  XCB_GC_FOREGROUND | XCB_GC_SUBWINDOW_MODE | XCB_GC_GRAPHICS_EXPOSURES,
                  values.data());
    return graphics;
}

} // namespace glimmerpane::x11
