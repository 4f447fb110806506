// SPDX-License-Identifier: MIT
#include "platform/portal/PortalScreenSource.h"

#include "platform/Log.h"
#include "platform/portal/GrantedDisplay.h"
#include "platform/portal/PortalStream.h"

#include <QPointer>

#include <utility>

namespace glimmerpane::portal
{

namespace
{

Error elsewhere()
{
    return {.text = Error::tr("The area is on another display than the one that was chosen for "
                              "recording. Choose the area's display, or move the area."),
            .log = QStringLiteral("the granted monitor does not have the middle of the area")};
}

} // namespace

bool isScreenCastThere()
{
    if (!screenCast().isThere()) {
        return false;
    }
    // A desktop's part of the portal may run in another desktop, where it can record nothing.
    constexpr uint monitor = 1;
    const uint version = screenCast().propertyNow(QStringLiteral("version")).toUInt();
    const uint types = screenCast().propertyNow(QStringLiteral("AvailableSourceTypes")).toUInt();
    qCInfo(platformLog, "the portal's ScreenCast has version %u, types %u", version, types);
    return version > 0 && (types & monitor) != 0;
}

PortalScreenSource::PortalScreenSource(std::shared_ptr<Displays> displays,
                                       std::shared_ptr<RestoreTokenStore> tokens,
                                       PointerWish pointer, pipewire::StreamEnvironment environment)
    : displays_(std::move(displays))
    , tokens_(std::move(tokens))
    , pointer_(pointer)
    , environment_(std::move(environment))
{
}

PortalScreenSource::~PortalScreenSource() = default;

QCoro::Task<std::expected<ShareableContent, Error>> PortalScreenSource::shareableContent(Rect area)
{
    withdrawRequest();
    const auto main = displays_->mainDisplay();
    const QPoint middle = main ? main->areaPixels(area).center() : QPoint();
    const auto hasArea = [middle, this](const PortalGrant &grant) {
        return grantedDisplay(grant, displays_->displays()).contains(middle);
    };
    const QPointer self(this);
    const QString token = tokens_ ? tokens_->load() : QString();
    auto grant = co_await ask(token);
    if (self && grant && !token.isEmpty() && !hasArea(*grant)) {
        // The token was for another monitor, so this one is for the user to choose.
        grant = std::unexpected(elsewhere());
        grant = co_await ask({});
    }
    if (!self) {
        co_return std::unexpected(Error{.text = {}, .log = {}, .outcome = Outcome::cancelled});
    }
    if (!grant) {
        co_return std::unexpected(grant.error());
    }
    if (!hasArea(*grant)) {
        co_return std::unexpected(elsewhere());
    }
    grant_ = std::make_unique<PortalGrant>(std::move(*grant));
    co_return ShareableContent{.displays = displays_->displays()};
}

/** Asks once, and keeps the new token or forgets one that is no longer good. */
QCoro::Task<std::expected<PortalGrant, Error>> PortalScreenSource::ask(QString token)
{
    const auto requests = std::make_shared<PortalRequests>();
    requests_ = requests;
    const QPointer self(this);
    auto grant = co_await PortalGrant::ask(*requests, token, pointer_);
    if (self && requests_ == requests) {
        requests_.reset();
        const bool isDeclined = !grant && grant.error().outcome == Outcome::cancelled;
        if (tokens_ && (grant || isDeclined)) {
            tokens_->save(grant ? grant->token : QString());
        }
    }
    co_return grant;
}

void PortalScreenSource::withdrawRequest()
{
    if (const auto requests = std::exchange(requests_, nullptr)) {
        requests->withdraw();
    }
    grant_.reset();
}

std::unique_ptr<CaptureStream> PortalScreenSource::makeCaptureStream(
    const ContentFilter &filter, const StreamConfiguration &configuration)
{
    const QRect display
        = grant_ ? grantedDisplay(*grant_, displays_->displays()) : filter.display.pixels;
    return std::make_unique<PortalStream>(std::move(grant_), display, filter, configuration,
                                          environment_);
}

} // namespace glimmerpane::portal
