// SPDX-License-Identifier: MIT
#include "platform/x11/PointerTracker.h"

#include "platform/x11/Events.h"
#include "platform/x11/RawInput.h"

#include <xcb/xinput.h>

#include <algorithm>
#include <cstring>

namespace glimmerpane::x11
{

namespace
{

// An animated cursor has one serial per picture, up to 60 for each second of animation.
constexpr std::size_t mostLooks = 128;

} // namespace

PointerTracker::PointerTracker(const Connection &connection, const Extensions &extensions)
    : connection_(connection)
    , cursorEvent_(extensions.firstXFixesEvent + XCB_XFIXES_CURSOR_NOTIFY)
    , xinputOpcode_(extensions.xinputOpcode)
{
    selectRawEvents(connection, XCB_INPUT_XI_EVENT_MASK_RAW_MOTION);
    xcb_xfixes_select_cursor_input(connection.get(), connection.root(),
                                   XCB_XFIXES_CURSOR_NOTIFY_MASK_DISPLAY_CURSOR);
}

bool PointerTracker::concerns(const xcb_generic_event_t &event)
{
    const auto type = typeOf(event);
    if (type == cursorEvent_) {
        serial_ = eventAs<xcb_xfixes_cursor_notify_event_t>(event).cursor_serial;
        return true;
    }
    return rawEventType(event, xinputOpcode_) == XCB_INPUT_RAW_MOTION;
}

void PointerTracker::query()
{
    position_ = xcb_query_pointer(connection_.get(), connection_.root());
    if (cachedLook() == nullptr) {
        image_ = xcb_xfixes_get_cursor_image(connection_.get());
    }
}

std::optional<PointerSprite> PointerTracker::sprite(QRect source)
{
    if (image_) {
        const Reply<xcb_xfixes_get_cursor_image_reply_t> image(
            xcb_xfixes_get_cursor_image_reply(connection_.get(), *image_, nullptr));
        image_.reset();
        if (image) {
            readLook(*image);
        }
    }
    const Reply<xcb_query_pointer_reply_t> position(
        xcb_query_pointer_reply(connection_.get(), position_, nullptr));
    const Look *look = cachedLook();
    if (!position || position->same_screen == 0 || look == nullptr) {
        return std::nullopt;
    }
    const QPoint topLeft = QPoint(position->root_x, position->root_y) - look->hotspot;
    if (!source.intersects(QRect(topLeft, look->image.size()))) {
        return std::nullopt;
    }
    return PointerSprite{.serial = look->serial, .topLeft = topLeft, .image = look->image};
}

const PointerTracker::Look *PointerTracker::cachedLook() const
{
    const auto look = std::ranges::find(looks_, serial_, &Look::serial);
    return look == looks_.end() ? nullptr : &*look;
}

void PointerTracker::readLook(const xcb_xfixes_get_cursor_image_reply_t &reply)
{
    QImage image(reply.width, reply.height, QImage::Format_ARGB32_Premultiplied);
    const auto *pixels = xcb_xfixes_get_cursor_image_cursor_image(&reply);
    for (int y = 0; y < image.height(); ++y) {
        std::memcpy(image.scanLine(y), pixels + std::ptrdiff_t(y) * reply.width,
                    std::size_t(reply.width) * sizeof(*pixels));
    }
    serial_ = reply.cursor_serial;
    if (cachedLook() == nullptr) {
        looks_.push_back({.serial = serial_, .hotspot = {reply.xhot, reply.yhot}, .image = image});
    }
    if (looks_.size() > mostLooks) {
        looks_.pop_front();
    }
}

} // namespace glimmerpane::x11
