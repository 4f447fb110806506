// SPDX-License-Identifier: MIT
#include "platform/kwin/KWinScreenSource.h"

#include "platform/bus/BusObject.h"
#include "platform/kwin/KWinRecorder.h"

#include <QRegularExpression>

#include <utility>

namespace glimmerpane::kwin
{

bool isUsable()
{
    return !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") && checkPermission().has_value();
}

int majorVersion()
{
    const BusObject kwin{.service = QStringLiteral("org.kde.KWin"),
                         .path = QStringLiteral("/KWin"),
                         .interface = QStringLiteral("org.kde.KWin")};
    if (!kwin.isThere()) {
        return 0;
    }
    const QString said = kwin.resultNow(QStringLiteral("supportInformation")).toString();
    static const QRegularExpression version(QStringLiteral("KWin version: ([0-9]+)"));
    return version.match(said).captured(1).toInt();
}

KWinScreenSource::KWinScreenSource(std::shared_ptr<Displays> displays)
    : displays_(std::move(displays))
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
                                                  displays_, filter, configuration, background_);
}

} // namespace glimmerpane::kwin
