// SPDX-License-Identifier: MIT
#pragma once

#include "platform/CaptureStream.h"

namespace glimmerpane
{

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
};

} // namespace glimmerpane
