// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Frame.h"

#include <QColor>
#include <QImage>
#include <QPoint>

#include <vector>

namespace glimmerpane
{

/** A picture shown over the frames for a while. */
struct Highlight {
    QImage image; ///< premultiplied ARGB; an image shown before is cached
    QPoint topLeft; ///< of the image, desktop pixels
    double opacity = 1;
};

/**
 * Shows frames in a window. They are fitted into the bounds that the window had when the layer was
 * created, keeping the aspect ratio, with black around them. Main thread.
 */
class DisplayLayer
{
public:
    virtual ~DisplayLayer() = default;

    /** False until the display server has finished the previous frame. Never blocks. */
    virtual bool isReadyForMoreMediaData() = 0;

    /** Sends the frame to the display server and returns immediately. */
    virtual void enqueueSampleBuffer(const SampleBuffer &sample) = 0;

    /**
     * Replaces the highlights, the last one on top, and restores the picture under the old ones in
     * the same step. False if they are not shown yet, because the display server is busy or the
     * next frame will show them: then call again. Never blocks.
     */
    virtual bool setHighlights(const std::vector<Highlight> &highlights) = 0;

    /** Shows an image (premultiplied ARGB) in the middle of a colour, until the next frame. */
    virtual void showPlain(const QColor &color, const QImage &image) = 0;

    /** Waits until the display server has drawn all of it, so that no change follows. */
    virtual void finish() = 0;
};

} // namespace glimmerpane
