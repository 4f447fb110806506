// SPDX-License-Identifier: MIT
#include "platform/x11/OverlayLabelX11.h"

#include "platform/x11/WindowProperties.h"
#include "platform/x11/WindowShape.h"

#include <array>
#include <utility>

namespace glimmerpane::x11
{

OverlayLabelX11::OverlayLabelX11(const Connection &connection, const RenderFormats &formats)
    : connection_(connection)
    , formats_(formats)
{
    const auto id = connection.newId();
    const std::uint32_t unmanaged = 1;
    xcb_create_window(connection.get(), XCB_COPY_FROM_PARENT, id, connection.root(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT,
                      &unmanaged);
    window_ = Window(connection, id);
    describeOverlay(connection, id, QStringLiteral("Glimmerpane - Size"));
    setWindowShape(connection.get(), id, XCB_SHAPE_SK_INPUT, {});
}

void OverlayLabelX11::show(const OverlayLabel &label)
{
    auto *const connection = connection_.get();
    const auto id = window_.get();
    if (label.picture.isNull()) {
        if (std::exchange(isShown_, false)) {
            xcb_unmap_window(connection, id);
        }
        return;
    }
    const bool isNew = std::exchange(key_, label.picture.cacheKey()) != label.picture.cacheKey();
    if (isNew) {
        paint(label.picture);
    }
    const std::array<std::uint32_t, 4> geometry{static_cast<std::uint32_t>(label.topLeft.x()),
                                                static_cast<std::uint32_t>(label.topLeft.y()),
                                                static_cast<std::uint32_t>(label.picture.width()),
                                                static_cast<std::uint32_t>(label.picture.height())};
    xcb_configure_window(connection, id,
                         XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH
                             | XCB_CONFIG_WINDOW_HEIGHT,
                         geometry.data());
    if (!std::exchange(isShown_, true)) {
        const std::uint32_t above = XCB_STACK_MODE_ABOVE;
        xcb_configure_window(connection, id, XCB_CONFIG_WINDOW_STACK_MODE, &above);
        xcb_map_window(connection, id);
    } else if (isNew) {
        xcb_clear_area(connection, 0, id, 0, 0, 0, 0);
    }
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
    if (isShown_) {
        stacking.restack(window_.get());
    }
}

} // namespace glimmerpane::x11
