// SPDX-License-Identifier: MIT
#include "platform/x11/RootBackground.h"

#include "platform/x11/Compositing.h"
#include "platform/x11/Scaling.h"
#include "platform/x11/WindowProperties.h"

#include <xcb/composite.h>

#include <algorithm>
#include <array>
#include <ranges>
#include <utility>
#include <vector>

namespace glimmerpane::x11
{

namespace
{

// Programs that set a wallpaper store its pixmap here; the first is the newer property.
constexpr std::array<AtomName, 2> pixmapProperties{"_XROOTPMAP_ID", "ESETROOT_PMAP_ID"};
constexpr std::uint8_t argbDepth = 32;

} // namespace

RootBackground::RootBackground(const Connection &connection, const RenderFormats &formats)
    : connection_(connection)
    , formats_(formats)
    , size_(connection.rootRectangle().size())
{
}

bool RootBackground::isNamedBy(xcb_atom_t property) const
{
    return std::ranges::any_of(pixmapProperties,
                               [&](AtomName name) { return property == connection_.atom(name); });
}

void RootBackground::renew(const QRegion &uncovered)
{
    if (Picture named = namedPixmap(); named.get() != 0) {
        picture_ = std::move(named);
        isGuessed_ = false;
    } else if (!isComposited(connection_)) {
        paintOwn();
    } else if (!isGuessed_) {
        guess(uncovered);
    }
}

Picture RootBackground::namedPixmap() const
{
    for (const AtomName name : pixmapProperties) {
        const PropertyQuestion question(connection_, connection_.root(), connection_.atom(name),
                                        sizeof(xcb_pixmap_t));
        const xcb_pixmap_t pixmap = question.item<xcb_pixmap_t>().value_or(XCB_NONE);
        const Reply<xcb_get_geometry_reply_t> geometry(xcb_get_geometry_reply(
            connection_.get(), xcb_get_geometry(connection_.get(), pixmap), nullptr));
        if (geometry && geometry->depth == connection_.screen().root_depth) {
            Picture picture(connection_, connection_.newId());
            const std::uint32_t tiled = XCB_RENDER_REPEAT_NORMAL;
            xcb_render_create_picture(connection_.get(), picture.get(), pixmap, formats_.screen,
                                      XCB_RENDER_CP_REPEAT, &tiled);
            return picture;
        }
    }
    return {};
}

/** Lets the server paint a window with the root's background, the only way to obtain it. */
void RootBackground::paintOwn()
{
    const Window window(connection_, connection_.newId());
    const std::array<std::uint32_t, 2> values{XCB_BACK_PIXMAP_PARENT_RELATIVE, 1};
    xcb_create_window(connection_.get(), XCB_COPY_FROM_PARENT, window.get(), connection_.root(), 0,
                      0, extent(size_.width()), extent(size_.height()), 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_BACK_PIXMAP | XCB_CW_OVERRIDE_REDIRECT, values.data());
    // It is not visible, being below all others and redirected manually, and is destroyed at once.
    const std::uint32_t below = XCB_STACK_MODE_BELOW;
    xcb_configure_window(connection_.get(), window.get(), XCB_CONFIG_WINDOW_STACK_MODE, &below);
    xcb_composite_redirect_window(connection_.get(), window.get(), XCB_COMPOSITE_REDIRECT_MANUAL);
    xcb_map_window(connection_.get(), window.get());
    canvas_ = makeCanvas(connection_, size_, connection_.screen().root_depth, formats_.screen);
    const GraphicsContext graphics = makeGraphicsContext(connection_, canvas_.pixmap.get());
    xcb_copy_area(connection_.get(), window.get(), canvas_.pixmap.get(), graphics.get(), 0, 0, 0, 0,
                  extent(size_.width()), extent(size_.height()));
    picture_ = std::move(canvas_.picture);
    isGuessed_ = false;
}

/** Fills the holes left by windows from their surroundings, with ever coarser pixels. */
void RootBackground::guess(const QRegion &uncovered)
{
    constexpr int coarseness = 8; // fine enough for something that will be blurred
    Canvas picture = screenshot(connection_, formats_, {QPoint(), size_});
    for (int step = 1; step < coarseness; step *= 2) {
        picture = halved(picture);
    }
    const QRegion holes = QRegion(QRect(QPoint(), size_)) - uncovered;
    std::vector<xcb_rectangle_t> cleared;
    for (const QRect &hole : holes) {
        const QRect shadowed = hole.adjusted(-coarseness, -coarseness, coarseness, coarseness);
        const QPoint from = shadowed.topLeft() / coarseness;
        const QPoint to = shadowed.bottomRight() / coarseness;
        cleared.push_back(rectangleOf({from, to}));
    }
    xcb_render_fill_rectangles(connection_.get(), XCB_RENDER_PICT_OP_SRC, picture.picture.get(), {},
                               static_cast<std::uint32_t>(cleared.size()), cleared.data());
    std::vector<Canvas> levels;
    levels.push_back(std::move(picture));
    while (levels.back().size != QSize(1, 1)) {
        levels.push_back(halved(levels.back()));
    }
    canvas_ = makeSmoothCanvas(connection_, levels.front().size, argbDepth, formats_.argb);
    const auto add = [&](const Canvas &level) {
        const double factor = double(canvas_.size.width()) / level.size.width();
        compositeScaled(connection_, XCB_RENDER_PICT_OP_OVER, level, factor,
                        {QPoint(), canvas_.size}, canvas_, {});
    };
    constexpr int untilOpaque = 32;
    for (int i = 0; i < untilOpaque; ++i) {
        add(levels.back());
    }
    std::ranges::for_each(levels | std::views::reverse, add);
    xcb_render_set_picture_transform(connection_.get(), canvas_.picture.get(),
                                     transform(1.0 / coarseness, 1.0 / coarseness, {}));
    picture_ = std::move(canvas_.picture);
    isGuessed_ = true;
}

Canvas RootBackground::halved(const Canvas &from) const
{
    const QSize size((from.size.width() + 1) / 2, (from.size.height() + 1) / 2);
    Canvas to = makeSmoothCanvas(connection_, size, argbDepth, formats_.argb);
    compositeScaled(connection_, XCB_RENDER_PICT_OP_SRC, from, 0.5, {QPoint(), size}, to, {});
    return to;
}

} // namespace glimmerpane::x11
