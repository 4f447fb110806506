// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ScreenSource.h"

namespace glimmerpane
{

/** The screen of a session that lets nobody record it: says what is missing. */
class NoScreenSource : public ScreenSource
{
public:
    QCoro::Task<std::expected<ShareableContent, Error>> shareableContent(Rect area) override;
    /** Null: there is no content to make one of. */
    std::unique_ptr<CaptureStream> makeCaptureStream(
        const ContentFilter &filter, const StreamConfiguration &configuration) override;
};

} // namespace glimmerpane
