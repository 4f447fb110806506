// SPDX-License-Identifier: MIT
#include "platform/gnome/GnomeScreenSource.h"

#include "platform/gnome/GnomeRecording.h"
#include "platform/pipewire/AreaStream.h"

#include <utility>

namespace glimmerpane::gnome
{

GnomeScreenSource::GnomeScreenSource(std::shared_ptr<Displays> displays,
                                     pipewire::StreamEnvironment environment)
    : displays_(std::move(displays))
    , environment_(std::move(environment))
{
}

QCoro::Task<std::expected<ShareableContent, Error>> GnomeScreenSource::shareableContent(
    Rect /*area*/)
{
    if (!isScreenCastThere()) {
        co_return std::unexpected(
            Error{.text = Error::tr("GNOME's screen-cast service is not running."),
                  .log = QStringLiteral("org.gnome.Mutter.ScreenCast has no owner"),
                  .outcome = Outcome::unavailable});
    }
    co_return ShareableContent{.displays = displays_->displays()};
}

std::unique_ptr<CaptureStream> GnomeScreenSource::makeCaptureStream(
    const ContentFilter &filter, const StreamConfiguration &configuration)
{
    return std::make_unique<pipewire::AreaStream>(std::make_shared<GnomeRecorder>(displays_),
                                                  displays_, filter, configuration, environment_);
}

} // namespace glimmerpane::gnome
