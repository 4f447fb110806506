// SPDX-License-Identifier: MIT
#include "platform/portal/PortalStream.h"

#include <utility>

namespace glimmerpane::portal
{

namespace
{

/**
 * Finds an area in pictures of its display. Both are desktop pixels; a picture can have more of
 * them, or fewer, where the compositor scales.
 */
auto areaIn(QRect display)
{
    return [display, scale = 0.0](QSize picture, QRect area) mutable {
        if (scale == 0) {
            scale = display.isEmpty() ? 1 : double(picture.width()) / display.width();
        }
        const QPointF place = QPointF(area.topLeft() - display.topLeft()) * scale;
        return QRect(place.toPoint(), (QSizeF(area.size()) * scale).toSize());
    };
}

QRect areaPixels(const ContentFilter &filter, const StreamConfiguration &configuration)
{
    return filter.display.areaPixels(
        flipped(configuration.sourceRect, filter.display.frame().height));
}

} // namespace

PortalStream::PortalStream(std::unique_ptr<PortalGrant> grant, QRect display,
                           const ContentFilter &filter, const StreamConfiguration &configuration,
                           pipewire::StreamEnvironment environment)
    : RecordedStream(std::move(environment))
    , display_(display)
    , main_(filter.display)
    , area_(areaPixels(filter, configuration))
    , minimumFrameInterval_(configuration.minimumFrameInterval.duration())
    , grant_(std::move(grant))
{
}

PortalStream::~PortalStream() = default;

QCoro::Task<PortalStream::Result> PortalStream::begin()
{
    if (!grant_) {
        co_return std::unexpected(
            Error{.text = Error::tr("The desktop could not start to record the screen."),
                  .log = QStringLiteral("the portal has not granted a monitor")});
    }
    grant_->onClosed(
        [this] { endedByDesktop(QStringLiteral("the portal has closed the session")); });
    portal_.emplace(screenCast().service, [this] {
        end({.text = Error::tr("The desktop's portal has ended."),
             .log = QStringLiteral("org.freedesktop.portal.Desktop lost its owner")});
    });
    pipewire::VideoNode node{.id = grant_->node,
                             .remote = std::move(grant_->remote),
                             .area = area_,
                             .partOf = areaIn(display_),
                             .minimumFrameInterval = minimumFrameInterval_};
    co_return co_await play(std::move(node));
}

bool PortalStream::move(const Rect &area)
{
    const QRect pixels = main_.areaPixels(area);
    return display_.contains(pixels.center()) && playArea(pixels);
}

void PortalStream::release()
{
    portal_.reset();
    grant_.reset();
}

} // namespace glimmerpane::portal
