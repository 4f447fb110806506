// SPDX-License-Identifier: MIT
#include "platform/x11/OverlayPainter.h"

#include "platform/x11/Compositing.h"
#include "platform/x11/Monitors.h"
#include "platform/x11/Xwayland.h"

#include <algorithm>
#include <iterator>

namespace glimmerpane::x11
{

namespace
{

/** Clipped to the window; pixels from its top-left corner. */
std::vector<QRect> marksOf(const OverlayScene &scene)
{
    std::vector<QRect> inside;
    inside.reserve(scene.picture.marks.size());
    for (const QRect &mark : scene.picture.marks) {
        inside.push_back(mark.translated(scene.pictureOrigin)
                         & QRect(QPoint(), scene.window.size()));
    }
    return inside;
}

} // namespace

OverlayPainter::OverlayPainter(const Connection &connection, const RenderFormats &formats,
                               const FrostedGlass &glass)
    : connection_(connection)
    , formats_(formats)
    , depth_(connection.screen().root_depth)
    , visual_(connection.screen().root_visual)
    , format_(formats.screen)
    , glassColor_(renderColor(glass.tint, 1))
    , glass_(glass)
{
    const auto translucent = translucentVisual(connection.screen());
    // Xwayland's root has no pixels to blur; its compositor shows what is behind.
    if (translucent != 0 && (blursBehindWindows(connection) || isXwayland(connection))) {
        depth_ = 32;
        visual_ = translucent;
        format_ = formats.argb;
        glassColor_ = renderColor(glass.tint, glass.strength);
    }
}

void OverlayPainter::takeBackdrop(const Extensions &extensions, xcb_window_t window, QRect area)
{
    if (isTranslucent()) {
        return;
    }
    graphics_ = makeGraphicsContext(connection_, connection_.root());
    const auto displays = monitors(connection_);
    const QRect main = displays.empty() ? QRect() : displays.front().pixels;
    const QRect covered = main.united(area & connection_.rootRectangle());
    if (!covered.isEmpty()) {
        backdrop_.emplace(connection_, extensions, formats_, window, covered, glass_);
    }
}

void OverlayPainter::note(const xcb_generic_event_t &event)
{
    if (backdrop_) {
        backdrop_->note(event);
    }
}

bool OverlayPainter::mayBeOld(const OverlayScene &scene) const
{
    return backdrop_ && backdrop_->mayBeOld(scene.window);
}

bool OverlayPainter::renewGlass(xcb_window_t window, const OverlayScene &scene)
{
    const QRect renewed = backdrop_ ? backdrop_->renew(scene.window) & scene.window : QRect();
    if (!renewed.isEmpty()) {
        paintGlass(window, scene, renewed);
    }
    return !renewed.isEmpty();
}

Canvas OverlayPainter::makeCanvas(QSize size) const
{
    return x11::makeCanvas(connection_, size, depth_, format_);
}

void OverlayPainter::paint(const Canvas &canvas, const OverlayScene &scene)
{
    if (!backdrop_ || !backdrop_->area().contains(scene.window)) {
        fill(canvas, {QRect(QPoint(), scene.window.size())}, glassColor_);
    }
    copyGlass(scene.window, canvas.pixmap.get(), {});
    fill(canvas, marksOf(scene), renderColor(scene.picture.markColor, 1));
    drawPanel(canvas, scene.picture.panel, scene.pictureOrigin + scene.picture.panelOrigin);
}

bool OverlayPainter::isOnlyMoved(const OverlayScene &from, const OverlayScene &to) const
{
    return from.window.size() == to.window.size() && from.pictureOrigin == to.pictureOrigin
        && from.picture == to.picture
        && (isTranslucent() || (backdrop_ && backdrop_->area().contains(to.window)));
}

/** Restricted to `part`, in root pixels. */
void OverlayPainter::paintGlass(xcb_window_t window, const OverlayScene &scene, QRect part)
{
    if (!backdrop_) {
        return;
    }
    const QPoint origin = scene.window.topLeft();
    const QRect panel(scene.pictureOrigin + scene.picture.panelOrigin, scene.picture.panel.size());
    QRegion glass = QRegion(part.translated(-origin)) - panel;
    for (const QRect &mark : marksOf(scene)) {
        glass -= mark;
    }
    for (const QRect &bare : glass) {
        copyGlass(bare.translated(origin), window, bare.topLeft());
    }
    if (!panel.translated(origin).intersects(part)) {
        return;
    }
    if (panel_.onGlass.size != panel.size()) {
        panel_.onGlass = makeCanvas(panel.size());
    }
    const std::uint32_t pixmap = panel_.onGlass.pixmap.get();
    copyGlass(panel.translated(origin), pixmap, {});
    drawPanel(panel_.onGlass, scene.picture.panel, {});
    xcb_copy_area(connection_.get(), pixmap, window, graphics_.get(), 0, 0, coordinate(panel.x()),
                  coordinate(panel.y()), extent(panel.width()), extent(panel.height()));
}

/** Copies nothing where the backdrop does not reach. */
void OverlayPainter::copyGlass(QRect rootRectangle, std::uint32_t drawable, QPoint place) const
{
    const QRect seen = backdrop_ ? rootRectangle & backdrop_->area() : QRect();
    if (seen.isEmpty()) {
        return;
    }
    const QPoint from = seen.topLeft() - backdrop_->area().topLeft();
    const QPoint to = seen.topLeft() - rootRectangle.topLeft() + place;
    xcb_copy_area(connection_.get(), backdrop_->canvas().pixmap.get(), drawable, graphics_.get(),
                  coordinate(from.x()), coordinate(from.y()), coordinate(to.x()),
                  coordinate(to.y()), extent(seen.width()), extent(seen.height()));
}

void OverlayPainter::drawPanel(const Canvas &canvas, const QImage &panel, QPoint place)
{
    if (panel.isNull()) {
        return;
    }
    if (panel_.key != panel.cacheKey()) {
        panel_.key = panel.cacheKey();
        panel_.image = uploadImage(connection_, formats_, panel);
    }
    composite(connection_, XCB_RENDER_PICT_OP_OVER, panel_.image.picture, {QPoint(), panel.size()},
              canvas.picture, place);
}

void OverlayPainter::fill(const Canvas &canvas, const std::vector<QRect> &rectangles,
                          const xcb_render_color_t &color) const
{
    std::vector<xcb_rectangle_t> filled;
    filled.reserve(rectangles.size());
    std::ranges::transform(rectangles, std::back_inserter(filled), rectangleOf);
    xcb_render_fill_rectangles(connection_.get(), XCB_RENDER_PICT_OP_SRC, canvas.picture.get(),
                               color, static_cast<std::uint32_t>(filled.size()), filled.data());
}

} // namespace glimmerpane::x11
