// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DisplayLayer.h"
#include "platform/x11/Connection.h"
#include "platform/x11/LatestPicture.h"
#include "platform/x11/Render.h"
#include "platform/x11/ServerId.h"

#include <chrono>
#include <deque>
#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace glimmerpane::x11
{

/**
 * Shows frames by requests alone: changes are copied from the screen, or from memory that the
 * server shares with this program or with a recorder, into the window inside the server. A frame of
 * the window's size is copied as is; any other is scaled by RENDER. The connection is read only
 * when a frame arrives, so the server's replies cause no wake-ups.
 */
class DisplayLayerX11 : public DisplayLayer
{
public:
    /** Told whenever the window changes; because a frame has a new picture, or not. */
    using Drawn = std::function<void(bool isPictureNew)>;

    /**
     * A layer that covers a window of `size` pixels. Pictures in memory are lent to the server as
     * far as it can and `most` allows. Waits for the server.
     */
    static std::expected<std::unique_ptr<DisplayLayer>, Error> create(std::uint32_t window,
                                                                      QSize size, Lending most,
                                                                      Drawn drawn);

    bool isReadyForMoreMediaData() override;
    void enqueueSampleBuffer(const SampleBuffer &sample) override;
    bool setHighlights(const std::vector<Highlight> &highlights) override;
    void showPlain(const QColor &color, const QImage &image) override;
    void finish() override;

private:
    using Fence = std::optional<xcb_get_input_focus_cookie_t>;

    struct Sprite {
        qint64 key = 0; ///< of the image
        Canvas canvas;
    };
    struct ShownPointer {
        std::uint32_t serial = 0;
        QPoint topLeft;
        QRect covered; ///< root pixels

        friend bool operator==(const ShownPointer &, const ShownPointer &) = default;
    };

    DisplayLayerX11(Connection connection, RenderFormats formats, std::uint32_t window, QSize size,
                    Lending lending, Drawn drawn);

    bool isPassed(Fence &fence);
    void noteError(const xcb_generic_event_t &event);
    Fence setFence() const;
    bool isScaled() const;
    QRegion adoptPointer();
    std::vector<QRect> overlays() const;
    QRegion adoptHighlights();
    void showElsewhere();
    void show(const QRegion &stale);
    void showPatch(const QRegion &patch);
    void showScaled();
    void prepareCanvas(QSize size);
    void blackenCanvas(QSize size);
    const Picture &sprite(const QImage &image);

    const Connection connection_;
    const RenderFormats formats_;
    const std::uint32_t window_;
    const QRect bounds_; ///< in the window, pixels
    const Drawn drawn_;
    const GraphicsContext graphics_;
    LatestPicture picture_;
    Picture screen_; ///< the drawable's, if it is scaled
    Canvas canvas_; ///< for assembling a patch before it is shown
    std::deque<Sprite> sprites_;
    SampleBuffer frame_; ///< the latest, without its pixels; empty before the first
    bool isStale_ = false; ///< the server did not draw what it was told: the next frame is whole
    QRect fitted_; ///< where the window shows the picture, pixels; null while that is unknown
    std::optional<ShownPointer> shownPointer_;
    std::vector<Highlight> highlights_;
    QRegion highlighted_; ///< where the window shows highlights, root pixels
    bool isHighlightDue_ = false; ///< highlights_ wait for the next frame
    std::chrono::steady_clock::time_point lastFrame_;
    Fence frameFence_;
    Fence highlightFence_;
};

} // namespace glimmerpane::x11
