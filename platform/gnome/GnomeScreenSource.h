// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ScreenSource.h"
#include "platform/pipewire/StreamEnvironment.h"

namespace glimmerpane::gnome
{

/** The screen of a GNOME session on Wayland, recorded by its shell without any question. */
class GnomeScreenSource : public ScreenSource
{
public:
    GnomeScreenSource(std::shared_ptr<Displays> displays, pipewire::StreamEnvironment environment);

    QCoro::Task<std::expected<ShareableContent, Error>> shareableContent(Rect area) override;
    std::unique_ptr<CaptureStream> makeCaptureStream(
        const ContentFilter &filter, const StreamConfiguration &configuration) override;

private:
    const std::shared_ptr<Displays> displays_;
    const pipewire::StreamEnvironment environment_; ///< shared with the streams
};

} // namespace glimmerpane::gnome
