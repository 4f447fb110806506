// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ScreenSource.h"

#include <QThreadPool>

namespace glimmerpane::wlroots
{

/** The compositor's own copies of the screen. No dialog asks for permission. */
class ScreenSourceWlroots : public ScreenSource
{
public:
    QCoro::Task<std::expected<ShareableContent, Error>> shareableContent(Rect area) override;
    std::unique_ptr<CaptureStream> makeCaptureStream(
        const ContentFilter &filter, const StreamConfiguration &configuration) override;

private:
    /** For calls that block; shared with the streams. Its destructor waits for them. */
    const std::shared_ptr<QThreadPool> background_ = std::make_shared<QThreadPool>();
};

} // namespace glimmerpane::wlroots
