// SPDX-License-Identifier: MIT
#include "platform/x11/CaptureLoop.h"

#include "platform/Log.h"
#include "platform/x11/Coordinates.h"
#include "platform/x11/Events.h"
#include "platform/x11/Monitors.h"
#include "platform/x11/Regions.h"

#include <algorithm>
#include <array>
#include <poll.h>
#include <type_traits>
#include <unistd.h>
#include <utility>

namespace glimmerpane::x11
{

namespace
{

// Beyond this many rectangles, their bounds are copied: one request each would cost more.
constexpr int mostRectangles = 64;

// Displays change in several steps, and in between there may be none.
constexpr std::chrono::seconds longestAbsence(1);

bool sameLook(const std::optional<PointerSprite> &a, const std::optional<PointerSprite> &b)
{
    if (!a || !b) {
        return !a && !b;
    }
    return a->serial == b->serial && a->topLeft == b->topLeft;
}

Error areaGone()
{
    return {.text = Error::tr("The area is not on any display. Move it onto one."),
            .log = QStringLiteral("no monitor is under the area")};
}

} // namespace

std::expected<std::unique_ptr<CaptureLoop>, Error> CaptureLoop::create(
    CaptureSource source, int orders, CaptureStream::Handlers handlers)
{
    auto opened = openExtended();
    if (!opened) {
        return std::unexpected(opened.error());
    }
    std::unique_ptr<CaptureLoop> loop(new CaptureLoop(std::move(opened->connection),
                                                      opened->extensions, std::move(source), orders,
                                                      std::move(handlers)));
    if (auto watching = loop->watch(); !watching) {
        return std::unexpected(watching.error());
    }
    return loop;
}

CaptureLoop::CaptureLoop(Connection connection, const Extensions &extensions, CaptureSource source,
                         int orders, CaptureStream::Handlers handlers)
    : connection_(std::move(connection))
    , extensions_(extensions)
    , source_(std::move(source))
    , orders_(orders)
    , handlers_(std::move(handlers))
    , pacer_(source_.minimumFrameInterval)
{
}

std::expected<void, Error> CaptureLoop::watch()
{
    watchMonitors(connection_);
    if (source_.showsCursor) {
        pointer_.emplace(connection_, extensions_);
    }
    changes_ = makeRegion(connection_.get());
    areaRegion_ = makeRegion(connection_.get());
    // NonEmpty reports once and then not again until a DamageSubtract: at most one event per frame,
    // however much is drawn in however many pieces.
    const auto id = connection_.newId();
    const auto request = xcb_damage_create_checked(connection_.get(), id, connection_.root(),
                                                   XCB_DAMAGE_REPORT_LEVEL_NON_EMPTY);
    if (auto created = connection_.check(request, "DamageCreate"); !created) {
        return created;
    }
    damage_ = Damage(connection_, id);
    findArea();
    return area_.isEmpty() ? std::unexpected(areaGone()) : std::expected<void, Error>();
}

/** Updates the area's position. False if it is on no display. */
bool CaptureLoop::findArea()
{
    const auto displays = monitors(connection_);
    if (displays.empty()) {
        return false;
    }
    const MainDisplay main{.pixels = displays.front().pixels, .scale = source_.scale};
    area_ = main.areaPixels(source_.area);
    carried_ = area_;
    const xcb_rectangle_t rectangle = rectangleOf(area_);
    xcb_xfixes_set_region(connection_.get(), areaRegion_.get(), 1, &rectangle);
    return std::ranges::any_of(
        displays, [this](const Display &display) { return display.pixels.intersects(area_); });
}

void CaptureLoop::run()
{
    constexpr auto unwanted = FramePacer::TimePoint::max();
    auto wantedSince = unwanted; // a change other than the pointer's
    while (true) {
        readOrders();
        readEvents();
        if (!isRunning_) {
            return;
        }
        if (giveUpAt_ || (!isDamaged_ && !isPointerStale_ && carried_.isEmpty())) {
            rest();
            continue;
        }
        const auto now = std::chrono::steady_clock::now();
        const bool isPointerAlone = !isDamaged_ && carried_.isEmpty();
        const auto due = isPointerAlone ? pacer_.pointerDue() : pacer_.due();
        if (!isPointerAlone) {
            wantedSince = std::min(wantedSince, now);
        }
        if (now >= due) {
            pacer_.advance(now, std::min(std::exchange(wantedSince, unwanted), now));
            look();
        } else {
            wait(due - now);
        }
    }
}

/** Waits until something happens that may require a frame. */
void CaptureLoop::rest()
{
    if (!giveUpAt_) {
        wait(std::nullopt);
        return;
    }
    const auto left = *giveUpAt_ - std::chrono::steady_clock::now();
    if (left > left.zero()) {
        wait(left);
    } else {
        end(areaGone());
    }
}

void CaptureLoop::readOrders()
{
    static_assert(std::is_trivially_copyable_v<CaptureOrder>);
    CaptureOrder order;
    bool isMoved = false;
    ssize_t length = 0;
    while ((length = read(orders_, &order, sizeof order)) == sizeof order) {
        carried_ |= order.redraw & area_;
        if (order.area) {
            source_.area = *order.area;
            isMoved = true;
        }
    }
    if (isMoved) { // only the latest place is of interest
        followArea();
    }
    isRunning_ = isRunning_ && length != 0;
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
        end({.text = Error::tr("The connection to the X server was lost."),
             .log
             = QStringLiteral("xcb error %1").arg(xcb_connection_has_error(connection_.get()))});
    }
}

void CaptureLoop::handle(const xcb_generic_event_t &event)
{
    const int type = typeOf(event);
    if (type == extensions_.firstDamageEvent + XCB_DAMAGE_NOTIFY) {
        isDamaged_ = true;
    } else if (pointer_ && pointer_->concerns(event)) {
        isPointerStale_ = true;
    } else if (tellsOfMonitors(event, connection_, extensions_)) {
        followArea();
    }
}

void CaptureLoop::followArea()
{
    if (findArea()) {
        giveUpAt_.reset();
        qCInfo(platformLog) << "the area is now at" << area_;
    } else if (!giveUpAt_) {
        giveUpAt_ = std::chrono::steady_clock::now() + longestAbsence;
    }
}

void CaptureLoop::end(Error error)
{
    isRunning_ = false;
    qCInfo(platformLog, "capture ended by itself: %s", qPrintable(error.log));
    handlers_.didStopWithError(std::move(error));
}

void CaptureLoop::look()
{
    auto *const connection = connection_.get();
    std::optional<xcb_xfixes_fetch_region_cookie_t> changes;
    if (std::exchange(isDamaged_, false)) {
        xcb_damage_subtract(connection, damage_.get(), XCB_NONE, changes_.get());
        xcb_xfixes_intersect_region(connection, changes_.get(), areaRegion_.get(), changes_.get());
        changes = xcb_xfixes_fetch_region(connection, changes_.get());
    }
    if (pointer_) {
        pointer_->query();
    }
    isPointerStale_ = false;

    SampleBuffer sample{.picture = ServerDrawable{connection_.root()},
                        .source = area_,
                        .changed = std::exchange(carried_, QRegion()),
                        .pointer = std::nullopt,
                        .time = std::chrono::steady_clock::now()};
    if (changes) {
        sample.changed |= readRegion(*changes);
    }
    if (pointer_) {
        sample.pointer = pointer_->sprite(area_);
    }
    if (sample.changed.isEmpty() && sameLook(sample.pointer, shownPointer_)) {
        return;
    }
    shownPointer_ = sample.pointer;
    qCDebug(platformLog) << "frame of" << sample.changed;
    if (!sample.changed.isEmpty()) {
        pacer_.pictureShown(sample.time);
    }
    handlers_.didOutputSampleBuffer(std::move(sample));
}

QRegion CaptureLoop::readRegion(xcb_xfixes_fetch_region_cookie_t cookie) const
{
    const Reply<xcb_xfixes_fetch_region_reply_t> reply(
        xcb_xfixes_fetch_region_reply(connection_.get(), cookie, nullptr));
    if (!reply) {
        return {};
    }
    if (xcb_xfixes_fetch_region_rectangles_length(reply.get()) > mostRectangles) {
        const auto &bounds = reply->extents;
        return QRect(bounds.x, bounds.y, bounds.width, bounds.height);
    }
    return regionOf(*reply);
}

void CaptureLoop::wait(std::optional<std::chrono::nanoseconds> limit) const
{
    connection_.flush();
    std::array descriptors{
        pollfd{.fd = connection_.fileDescriptor(), .events = POLLIN, .revents = 0},
        pollfd{.fd = orders_, .events = POLLIN, .revents = 0},
    };
    const auto time = limit.value_or(std::chrono::nanoseconds::zero());
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time);
    const timespec timeout{.tv_sec = seconds.count(), .tv_nsec = (time - seconds).count()};
    ppoll(descriptors.data(), descriptors.size(), limit ? &timeout : nullptr, nullptr);
}

} // namespace glimmerpane::x11
