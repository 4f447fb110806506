// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ScreenSource.h"

#include <QThreadPool>

namespace glimmerpane::gnome
{

/** The screen of a GNOME session on Wayland, recorded by its shell without any question. */
class GnomeScreenSource : public ScreenSource
{
public:
    explicit GnomeScreenSource(std::shared_ptr<Displays> displays);

    QCoro::Task<std::expected<ShareableContent, Error>> shareableContent(Rect area) override;
    std::unique_ptr<CaptureStream> makeCaptureStream(
        const ContentFilter &filter, const StreamConfiguration &configuration) override;

private:
    const std::shared_ptr<Displays> displays_;
    /** For calls that block; shared with the streams. Its destructor waits for them. */
    const std::shared_ptr<QThreadPool> background_ = std::make_shared<QThreadPool>();
};

} // namespace glimmerpane::gnome
