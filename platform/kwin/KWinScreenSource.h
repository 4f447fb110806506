// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ScreenSource.h"

#include <QThreadPool>

namespace glimmerpane::kwin
{

/** Whether this is a KWin that lets this program record the screen without a question. Waits. */
bool isUsable();

/** The screen of a Plasma session on Wayland, recorded by KWin without any question. */
class KWinScreenSource : public ScreenSource
{
public:
    explicit KWinScreenSource(std::shared_ptr<Displays> displays);

    QCoro::Task<std::expected<ShareableContent, Error>> shareableContent(Rect area) override;
    std::unique_ptr<CaptureStream> makeCaptureStream(
        const ContentFilter &filter, const StreamConfiguration &configuration) override;

private:
    const std::shared_ptr<Displays> displays_;
    /** For calls that block; shared with the streams. Its destructor waits for them. */
    const std::shared_ptr<QThreadPool> background_ = std::make_shared<QThreadPool>();
};

} // namespace glimmerpane::kwin
