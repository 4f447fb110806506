// SPDX-License-Identifier: MIT
#include "platform/x11/OverlayLabelX11.h"

#include "platform/x11/WindowGeometry.h"
#include "platform/x11/WindowProperties.h"
#include "platform/x11/WindowShape.h"

#include <utility>

namespace glimmerpane::x11
{

namespace
{

constexpr QPoint hiddenPlace(-1000, -1000); // root pixels

} // namespace

OverlayLabelX11::OverlayLabelX11(const Connection &connection, const RenderFormats &formats)
    : connection_(connection)
    , formats_(formats)
{
    const auto id = connection.newId();
    const std::uint32_t unmanaged = 1;
    xcb_create_window(connection.get(), XCB_COPY_FROM_PARENT, id, connection.root(),
                      hiddenPlace.x(), hiddenPlace.y(), 1, 1, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT, &unmanaged);
    window_ = Window(connection, id);
    describeOverlay(connection, id, QStringLiteral("Glimmerpane - Size"));
    setWindowShape(connection.get(), id, XCB_SHAPE_SK_INPUT, {});
    xcb_map_window(connection.get(), id);
}

void OverlayLabelX11::show(const OverlayLabel &label)
{
    const bool isHidden = label.picture.isNull();
    const QSize size = label.picture.size().expandedTo({1, 1});
    const QPoint place = isHidden ? hiddenPlace : label.topLeft;
    if (!isHidden && std::exchange(key_, label.picture.cacheKey()) != label.picture.cacheKey()) {
        paint(label.picture);
    }
    setGeometry(connection_, window_.get(), {place, size});
    xcb_clear_area(connection_.get(), 0, window_.get(), 0, 0, 0, 0);
}

/** As the window's background, so that the server shows it by itself. */
void OverlayLabelX11::paint(const QImage &picture)
{
    const Canvas image = uploadImage(connection_, formats_, picture);
    const Canvas canvas
        = makeCanvas(connection_, picture.size(), connection_.screen().root_depth, formats_.screen);
    composite(connection_, XCB_RENDER_PICT_OP_SRC, image.picture, {QPoint(), picture.size()},
              canvas.picture, {});
    const std::uint32_t background = canvas.pixmap.get();
    xcb_change_window_attributes(connection_.get(), window_.get(), XCB_CW_BACK_PIXMAP, &background);
}

void OverlayLabelX11::restack(const OverlayStacking &stacking) const
{
    stacking.restack(window_.get());
}

} // namespace glimmerpane::x11
