// SPDX-License-Identifier: MIT
#pragma once

#include "platform/CaptureStream.h"
#include "platform/x11/Connection.h"

#include <xcb/xfixes.h>

#include <cstdint>
#include <deque>
#include <optional>

namespace glimmerpane::x11
{

/** Tracks the pointer's position and image on a capture thread's connection. */
class PointerTracker
{
public:
    /** Selects the events for pointer moves and new images. */
    PointerTracker(const Connection &connection, const Extensions &extensions);

    /** Whether the event means that the pointer may have moved or changed its image. */
    bool concerns(const xcb_generic_event_t &event);

    /** Sends the requests; sprite() reads their replies, in one round trip. */
    void query();

    /**
     * The pointer's image and position, if it touches `source` (root pixels). Call after query().
     */
    std::optional<PointerSprite> sprite(QRect source);

private:
    struct Look {
        std::uint32_t serial = 0;
        QPoint hotspot;
        QImage image;
    };

    const Look *cachedLook() const;
    void readLook(const xcb_xfixes_get_cursor_image_reply_t &reply);

    const Connection &connection_;
    const std::uint8_t cursorEvent_;
    const std::uint8_t xinputOpcode_;
    std::uint32_t serial_ = 0;
    std::deque<Look> looks_;
    xcb_query_pointer_cookie_t position_{};
    std::optional<xcb_xfixes_get_cursor_image_cookie_t> image_;
};

} // namespace glimmerpane::x11
