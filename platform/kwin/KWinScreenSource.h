// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ScreenSource.h"
#include "platform/pipewire/StreamEnvironment.h"

namespace glimmerpane::kwin
{

/** Whether this is a KWin that lets this program record the screen without a question. Waits. */
bool isUsable();

/** The screen of a Plasma session on Wayland, recorded by KWin without any question. */
class KWinScreenSource : public ScreenSource
{
public:
    KWinScreenSource(std::shared_ptr<Displays> displays, pipewire::StreamEnvironment environment);

    QCoro::Task<std::expected<ShareableContent, Error>> shareableContent(Rect area) override;
    std::unique_ptr<CaptureStream> makeCaptureStream(
        const ContentFilter &filter, const StreamConfiguration &configuration) override;

private:
    const std::shared_ptr<Displays> displays_;
    const pipewire::StreamEnvironment environment_; ///< shared with the streams
};

} // namespace glimmerpane::kwin
