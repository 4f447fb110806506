// SPDX-License-Identifier: MIT
#pragma once

#include "platform/CaptureStream.h"
#include "platform/Displays.h"

#include <memory>
#include <vector>

namespace glimmerpane
{

/** What can be captured; the primary display comes first. */
struct ShareableContent {
    std::vector<Display> displays;
};

/** Where pictures of the screen come from. Main thread. */
class ScreenSource
{
public:
    virtual ~ScreenSource() = default;

    /**
     * Asks for the right to read `area` (points, desktop coordinates). Fails if this program may
     * not read the screen, or if the system lacks something that capturing needs. The desktop may
     * ask the user, so the answer can take any time.
     */
    virtual QCoro::Task<std::expected<ShareableContent, Error>> shareableContent(Rect area) = 0;

    /**
     * Withdraws a request that is waiting for the user, which ends as cancelled, or gives up what
     * was granted and is not used by a stream.
     */
    virtual void withdrawRequest() { }

    /** A stream that has not been started yet. */
    virtual std::unique_ptr<CaptureStream> makeCaptureStream(
        const ContentFilter &filter, const StreamConfiguration &configuration)
        = 0;
};

} // namespace glimmerpane
