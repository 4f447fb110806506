// SPDX-License-Identifier: MIT
#include "platform/kwin/KWinScreenSource.h"

#include "platform/kwin/KWinRecorder.h"

#include <utility>

namespace glimmerpane::kwin
{

bool isUsable()
{
    return !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") && checkPermission().has_value();
}

KWinScreenSource::KWinScreenSource(std::shared_ptr<Displays> displays,
                                   pipewire::StreamEnvironment environment)
    : displays_(std::move(displays))
    , environment_(std::move(environment))
{
}

QCoro::Task<std::expected<ShareableContent, Error>> KWinScreenSource::shareableContent(
    Rect /*area*/)
{
    if (const auto permitted = checkPermission(); !permitted) {
        co_return std::unexpected(permitted.error());
    }
    co_return ShareableContent{.displays = displays_->displays()};
}

std::unique_ptr<CaptureStream> KWinScreenSource::makeCaptureStream(
    const ContentFilter &filter, const StreamConfiguration &configuration)
{
    return std::make_unique<pipewire::AreaStream>(std::make_shared<KWinRecorder>(displays_),
                                                  displays_, filter, configuration, environment_);
}

} // namespace glimmerpane::kwin
