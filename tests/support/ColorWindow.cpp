// SPDX-License-Identifier: MIT
#include "tests/support/ColorWindow.h"

#include <utility>

namespace glimmerpane::testing
{

namespace
{

/** Managers place a new window themselves unless its hints say that the user chose the place. */
void setPlacementHints(const XClient &client, xcb_window_t window, const QRect &rectangle)
{
    constexpr uint32_t userPositionAndSize = 1U | 2U;
    uint32_t hints[18]
        = {userPositionAndSize, static_cast<uint32_t>(rectangle.x()),
           static_cast<uint32_t>(rectangle.y()), static_cast<uint32_t>(rectangle.width()),
           static_cast<uint32_t>(rectangle.height())};
    xcb_change_property(client.connection(), XCB_PROP_MODE_REPLACE, window,
                        XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_WM_SIZE_HINTS, 32, 18, hints);
}

void setTitle(const XClient &client, xcb_window_t window, const QString &title)
{
    const QByteArray text = title.toUtf8();
    xcb_change_property(client.connection(), XCB_PROP_MODE_REPLACE, window,
                        client.atom("_NET_WM_NAME"), client.atom("UTF8_STRING"), 8,
                        static_cast<uint32_t>(text.size()), text.constData());
}

} // namespace

Result<ColorWindow> ColorWindow::show(const XClient &client, const Options &options)
{
    const xcb_window_t window = client.newId();
    const bool overrideRedirect = options.kind == Kind::OverrideRedirect;
    const uint32_t values[] = {options.color & 0xffffffU, overrideRedirect ? 1U : 0U};
    const QRect &area = options.rectangle;
    const auto cookie = xcb_create_window_checked(
        client.connection(), XCB_COPY_FROM_PARENT, window, client.root(),
        static_cast<int16_t>(area.x()), static_cast<int16_t>(area.y()),
        static_cast<uint16_t>(area.width()), static_cast<uint16_t>(area.height()), 0,
        XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
        XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values);
    if (const auto done = client.check(cookie, QStringLiteral("cannot create a window")); !done) {
        return failure(done.error());
    }
    ColorWindow result(client, window);
    setPlacementHints(client, window, area);
    if (!options.title.isEmpty()) {
        setTitle(client, window, options.title);
    }
    result.setMapped(true);
    return result;
}

ColorWindow::ColorWindow(ColorWindow &&other) noexcept
    : client_(other.client_)
    , window_(std::exchange(other.window_, XCB_NONE))
{
}

ColorWindow::~ColorWindow()
{
    if (window_ == XCB_NONE) {
        return;
    }
    xcb_destroy_window(client_->connection(), window_);
    client_->sync();
}

void ColorWindow::setColor(QRgb color) const
{
    const uint32_t pixel = color & 0xffffffU;
    xcb_change_window_attributes(client_->connection(), window_, XCB_CW_BACK_PIXEL, &pixel);
    xcb_clear_area(client_->connection(), 0, window_, 0, 0, 0, 0);
    client_->sync();
}

void ColorWindow::setGeometry(const QRect &rectangle) const
{
    const uint32_t values[]
        = {static_cast<uint32_t>(rectangle.x()), static_cast<uint32_t>(rectangle.y()),
           static_cast<uint32_t>(rectangle.width()), static_cast<uint32_t>(rectangle.height())};
    xcb_configure_window(client_->connection(), window_,
                         XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH
                             | XCB_CONFIG_WINDOW_HEIGHT,
                         values);
    client_->sync();
}

void ColorWindow::raise() const
{
    const uint32_t mode = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(client_->connection(), window_, XCB_CONFIG_WINDOW_STACK_MODE, &mode);
    client_->sync();
}

void ColorWindow::lower() const
{
    const uint32_t mode = XCB_STACK_MODE_BELOW;
    xcb_configure_window(client_->connection(), window_, XCB_CONFIG_WINDOW_STACK_MODE, &mode);
    client_->sync();
}

void ColorWindow::setMapped(bool mapped) const
{
    if (mapped) {
        xcb_map_window(client_->connection(), window_);
    } else {
        xcb_unmap_window(client_->connection(), window_);
    }
    client_->sync();
}

} // namespace glimmerpane::testing
