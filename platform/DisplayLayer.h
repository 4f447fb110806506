// SPDX-License-Identifier: MIT
#pragma once

#include "platform/CaptureStream.h"

#include <QImage>
#include <QPoint>

#include <vector>

namespace glimmerpane
{

/** A picture that lies over the frames for a while. */
struct Highlight {
    QImage image; ///< premultiplied ARGB; a copy of one that was shown before costs nothing
    QPoint topLeft; ///< of the image, root pixels
    double opacity = 1;
};

/**
 * Shows frames in a window: fitted into the window's bounds of the moment when the layer was made,
 * the aspect ratio kept, the window's background around. Main thread.
 */
class DisplayLayer
{
public:
    virtual ~DisplayLayer() = default;

    /** False until the X server has finished the frame before. Never waits. */
    virtual bool isReadyForMoreMediaData() = 0;

    /** Sends the frame to the X server and returns at once. */
    virtual void enqueueSampleBuffer(const SampleBuffer &sample) = 0;

    /**
     * Shows these highlights, the last one uppermost, in place of those before; where one was, the
     * picture is whole again in the same step. False as long as they are not shown, because the X
     * server is busy or a frame is due that will show them: then call again. Never waits.
     */
    virtual bool setHighlights(const std::vector<Highlight> &highlights) = 0;
};

} // namespace glimmerpane
