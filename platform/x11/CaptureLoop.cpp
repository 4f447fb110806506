// SPDX-License-Identifier: MIT
#include "platform/x11/CaptureLoop.h"

#include "platform/Log.h"
#include "platform/x11/Monitors.h"

#include <QVarLengthArray>

#include <algorithm>
#include <array>
#include <iterator>
#include <poll.h>
#include <type_traits>
#include <unistd.h>
#include <utility>

namespace glimmerpane::x11
{

namespace
{

// With more rectangles than this, their bounds are copied: a request for each would cost more.
constexpr int mostRectangles = 64;

xcb_rectangle_t toXcb(QRect rectangle)
{
    return {.x = static_cast<std::int16_t>(rectangle.x()),
            .y = static_cast<std::int16_t>(rectangle.y()),
            .width = static_cast<std::uint16_t>(rectangle.width()),
            .height = static_cast<std::uint16_t>(rectangle.height())};
}

Region makeRegion(const Connection &connection, std::optional<QRect> rectangle)
{
    const auto id = connection.newId();
    const xcb_rectangle_t content = toXcb(rectangle.value_or(QRect()));
    xcb_xfixes_create_region(connection.get(), id, rectangle ? 1 : 0, &content);
    return {connection, id};
}

/** The captured display, and the displays that the area lies on. */
std::vector<Display> relevant(const std::vector<Display> &displays, const CaptureSource &source)
{
    std::vector<Display> result;
    std::ranges::copy_if(displays, std::back_inserter(result), [&](const Display &display) {
        return display.name == source.display.name || display.pixels.intersects(source.area);
    });
    return result;
}

bool sameLook(const std::optional<PointerSprite> &a, const std::optional<PointerSprite> &b)
{
    if (!a || !b) {
        return !a && !b;
    }
    return a->serial == b->serial && a->topLeft == b->topLeft;
}

Error displayGone()
{
    return {.text = Error::tr("The captured display is gone or has changed."),
            .log = QStringLiteral("the monitors under the area changed")};
}

} // namespace

std::expected<std::unique_ptr<CaptureLoop>, Error> CaptureLoop::create(
    CaptureSource source, int redraws, CaptureStream::Handlers handlers)
{
    auto opened = openExtended();
    if (!opened) {
        return std::unexpected(opened.error());
    }
    std::unique_ptr<CaptureLoop> loop(new CaptureLoop(std::move(opened->connection),
                                                      opened->extensions, std::move(source),
                                                      redraws, std::move(handlers)));
    if (auto watching = loop->watch(); !watching) {
        return std::unexpected(watching.error());
    }
    return loop;
}

CaptureLoop::CaptureLoop(Connection connection, const Extensions &extensions, CaptureSource source,
                         int redraws, CaptureStream::Handlers handlers)
    : connection_(std::move(connection))
    , extensions_(extensions)
    , source_(std::move(source))
    , redraws_(redraws)
    , handlers_(std::move(handlers))
    , pacer_(source_.minimumFrameInterval)
    , carried_(source_.area)
{
}

std::expected<void, Error> CaptureLoop::watch()
{
    watchMonitors(connection_);
    if (source_.showsCursor) {
        pointer_.emplace(connection_, extensions_);
    }
    changes_ = makeRegion(connection_, std::nullopt);
    area_ = makeRegion(connection_, source_.area);
    // NonEmpty tells once and then not again before a DamageSubtract: at most one event a frame,
    // whatever draws on the screen, and however finely.
    const auto id = connection_.newId();
    const auto request = xcb_damage_create_checked(connection_.get(), id, connection_.root(),
                                                   XCB_DAMAGE_REPORT_LEVEL_NON_EMPTY);
    if (auto created = connection_.check(request, "DamageCreate"); !created) {
        return created;
    }
    damage_ = Damage(connection_, id);
    geometry_ = relevant(monitors(connection_), source_);
    if (std::ranges::find(geometry_, source_.display) == geometry_.end()) {
        return std::unexpected(displayGone());
    }
    return {};
}

void CaptureLoop::run()
{
    std::optional<FramePacer::TimePoint> wantedSince;
    while (true) {
        readRedraws();
        readEvents();
        if (!isRunning_) {
            return;
        }
        if (!isDamaged_ && !isPointerStale_ && carried_.isEmpty()) {
            wait(std::nullopt);
            continue;
        }
        const auto now = std::chrono::steady_clock::now();
        const bool isPointerAlone = !isDamaged_ && carried_.isEmpty();
        const auto due = isPointerAlone ? pacer_.pointerDue() : pacer_.due();
        if (!isPointerAlone) {
            wantedSince = wantedSince.value_or(now);
        }
        if (now >= due) {
            pacer_.advance(now, wantedSince.value_or(now));
            wantedSince.reset();
            look();
        } else {
            wait(due - now);
        }
    }
}

void CaptureLoop::readRedraws()
{
    static_assert(std::is_trivially_copyable_v<QRect>);
    QRect rectangle;
    ssize_t length = 0;
    while ((length = read(redraws_, &rectangle, sizeof rectangle)) == sizeof rectangle) {
        carried_ |= rectangle & source_.area;
    }
    isRunning_ = length != 0;
}

void CaptureLoop::readEvents()
{
    while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(connection_.get())}) {
        handle(*event);
        if (!isRunning_) {
            return;
        }
    }
    if (connection_.isBroken()) {
        end({.text = Error::tr("The connection to the X server broke."),
             .log
             = QStringLiteral("xcb error %1").arg(xcb_connection_has_error(connection_.get()))});
    }
}

void CaptureLoop::handle(const xcb_generic_event_t &event)
{
    const int type = event.response_type & 0x7f;
    if (type == extensions_.firstDamageEvent + XCB_DAMAGE_NOTIFY) {
        isDamaged_ = true;
    } else if (pointer_ && pointer_->concerns(event)) {
        isPointerStale_ = true;
    } else if (tellsOfMonitors(event, connection_, extensions_)) {
        checkGeometry();
    }
}

void CaptureLoop::checkGeometry()
{
    if (relevant(monitors(connection_), source_) != geometry_) {
        end(displayGone());
    }
}

void CaptureLoop::end(Error error)
{
    isRunning_ = false;
    qCInfo(platformLog, "capture ends by itself: %s", qPrintable(error.log));
    handlers_.didStopWithError(std::move(error));
}

void CaptureLoop::look()
{
    auto *const connection = connection_.get();
    std::optional<xcb_xfixes_fetch_region_cookie_t> changes;
    if (std::exchange(isDamaged_, false)) {
        xcb_damage_subtract(connection, damage_.get(), XCB_NONE, changes_.get());
        xcb_xfixes_intersect_region(connection, changes_.get(), area_.get(), changes_.get());
        changes = xcb_xfixes_fetch_region(connection, changes_.get());
    }
    if (pointer_) {
        pointer_->query();
    }
    isPointerStale_ = false;

    SampleBuffer sample{.drawable = connection_.root(),
                        .source = source_.area,
                        .changed = std::exchange(carried_, QRegion()),
                        .pointer = std::nullopt,
                        .time = std::chrono::steady_clock::now()};
    if (changes) {
        sample.changed |= readRegion(*changes);
    }
    if (pointer_) {
        sample.pointer = pointer_->sprite(source_.area);
    }
    if (sample.changed.isEmpty() && sameLook(sample.pointer, shownPointer_)) {
        return;
    }
    shownPointer_ = sample.pointer;
    qCDebug(platformLog) << "frame of" << sample.changed;
    if (!sample.changed.isEmpty()) {
        pacer_.pictureShown(sample.time);
    }
    handlers_.didOutputSampleBuffer(std::move(sample), SampleType::Screen);
}

QRegion CaptureLoop::readRegion(xcb_xfixes_fetch_region_cookie_t cookie) const
{
    const Reply<xcb_xfixes_fetch_region_reply_t> reply(
        xcb_xfixes_fetch_region_reply(connection_.get(), cookie, nullptr));
    if (!reply) {
        return {};
    }
    const auto &bounds = reply->extents;
    const int count = xcb_xfixes_fetch_region_rectangles_length(reply.get());
    if (count > mostRectangles) {
        return QRect(bounds.x, bounds.y, bounds.width, bounds.height);
    }
    const auto *const begin = xcb_xfixes_fetch_region_rectangles(reply.get());
    QVarLengthArray<QRect, mostRectangles> rectangles;
    std::transform(begin, begin + count, std::back_inserter(rectangles),
                   [](const auto &r) { return QRect(r.x, r.y, r.width, r.height); });
    // The server's regions are sorted and coalesced in the way that setRects() asks for.
    QRegion region;
    region.setRects(rectangles.constData(), count);
    return region;
}

void CaptureLoop::wait(std::optional<std::chrono::nanoseconds> limit) const
{
    connection_.flush();
    std::array descriptors{
        pollfd{.fd = connection_.fileDescriptor(), .events = POLLIN, .revents = 0},
        pollfd{.fd = redraws_, .events = POLLIN, .revents = 0},
    };
    const auto time = limit.value_or(std::chrono::nanoseconds::zero());
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time);
    const timespec timeout{.tv_sec = seconds.count(), .tv_nsec = (time - seconds).count()};
    ppoll(descriptors.data(), descriptors.size(), limit ? &timeout : nullptr, nullptr);
}

} // namespace glimmerpane::x11
