// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DisplayLayer.h"
#include "platform/x11/Connection.h"
#include "platform/x11/Render.h"
#include "platform/x11/ServerId.h"

#include <deque>
#include <expected>
#include <memory>
#include <optional>

namespace glimmerpane::x11
{

/**
 * Shows frames by requests alone: what changed is copied from the screen into the window inside the
 * server. A frame that has the window's size is copied as it is; any other is scaled by RENDER.
 * The connection is read only when a frame comes, so the server's answers wake nobody.
 */
class DisplayLayerX11 : public DisplayLayer
{
public:
    /** A layer over the whole of a window that is `size` pixels large. Waits for the server. */
    static std::expected<std::unique_ptr<DisplayLayer>, Error> create(std::uint32_t window,
                                                                      QSize size);

    bool isReadyForMoreMediaData() override;
    void enqueueSampleBuffer(const SampleBuffer &sample) override;

private:
    struct PointerPicture {
        std::uint32_t serial = 0;
        Canvas image;
    };
    struct ShownPointer {
        std::uint32_t serial = 0;
        QPoint topLeft;
        QRect covered; ///< root pixels

        friend bool operator==(const ShownPointer &, const ShownPointer &) = default;
    };

    DisplayLayerX11(Connection connection, RenderFormats formats, std::uint32_t window, QSize size);

    void show(const SampleBuffer &sample);
    void showScaled(const SampleBuffer &sample);
    void showPatch(const SampleBuffer &sample, const PointerSprite &pointer, QRect patch);
    void copy(std::uint32_t from, QPoint fromPoint, std::uint32_t to, QPoint toPoint, QSize size);
    void prepareCanvas(QSize size);
    const Picture &pointerPicture(const PointerSprite &pointer);

    const Connection connection_;
    const RenderFormats formats_;
    const std::uint32_t window_;
    const QRect bounds_; ///< in the window, pixels
    GraphicsContext graphics_;
    Picture screen_;
    Canvas canvas_; ///< to put something together in before it is shown
    std::deque<PointerPicture> pointers_;
    std::optional<ShownPointer> shownPointer_;
    std::optional<xcb_get_input_focus_cookie_t> fence_;
};

} // namespace glimmerpane::x11
