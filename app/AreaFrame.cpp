// SPDX-License-Identifier: MIT
#include "app/AreaFrame.h"

#include "app/Log.h"
#include "model/AreaFlaw.h"
#include "platform/Palette.h"
#include "selection/AreaFrameLayout.h"

#include <QCoroTimer>
#include <QEvent>
#include <QGuiApplication>
#include <QPointer>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

namespace glimmerpane
{

namespace
{

using namespace std::chrono_literals;

/** Two frames of a display: programs, or a compositor, draw anew what the frame has uncovered. */
constexpr auto redrawTime = 33ms;
/** How long frames of a previous area may still be on their way to the output. */
constexpr auto settlingTime = 250ms;

QCoro::Task<> pause(std::chrono::milliseconds time)
{
    QTimer timer;
    timer.setSingleShot(true);
    timer.start(time);
    co_await timer;
}

} // namespace

AreaFrame::AreaFrame(MainViewModel &model, Backend backend, SettingsFile file)
    : model_(model)
    , backend_(std::move(backend))
    , file_(std::move(file))
{
    connect(&model_, &MainViewModel::sharedFrameChanged, this, &AreaFrame::areaChanged);
    connect(&model_, &MainViewModel::pausedChanged, this, &AreaFrame::refresh);
    forgetting_.setSingleShot(true);
    connect(&forgetting_, &QTimer::timeout, this, &AreaFrame::forget);
    if (file_.isOn()) {
        if (const auto made = make(); !made) {
            qCWarning(appLog, "cannot show a frame: %s", qPrintable(made.error().log));
        }
    }
}

AreaFrame::~AreaFrame() = default;

std::expected<QFuture<void>, Error> AreaFrame::turn(bool on)
{
    if (!on) {
        drag_.reset();
        goal_.reset();
        marks_.reset();
    } else if (!marks_) {
        if (const auto made = make(); !made) {
            return std::unexpected(made.error());
        }
    }
    Q_EMIT turned(on);
    return file_.save(on);
}

std::expected<void, Error> AreaFrame::make()
{
    auto made = backend_.marks->make();
    if (!made) {
        return std::unexpected(made.error());
    }
    marks_ = std::move(*made);
    marks_->onHandle = [this](const PointerEvent &event) { handle(event); };
    marks_->onDisplaysChanged = [this] {
        lookAtDisplays();
        areaChanged();
    };
    areaChanged();
    return {};
}

void AreaFrame::areaChanged()
{
    if (!isFollowing_) {
        lookAtDisplays(); // a drag moves the area often
    }
    if (const auto shared = model_.sharedFrame(); !shared) {
        area_ = {};
        seen_.clear();
        drag_.reset();
        goal_.reset();
    } else if (const QRect place = placeOf(*shared); place != area_) {
        interruptDrag(place);
        keepClear(std::exchange(area_, place));
    }
    refresh();
}

void AreaFrame::lookAtDisplays()
{
    const auto displays = backend_.displays->displays();
    desktop_ = {};
    for (const Display &display : displays) {
        desktop_ += display.pixels;
    }
    if (!displays.empty()) {
        main_ = {.pixels = displays.front().pixels, .scale = backend_.displays->scaleFactor()};
    }
}

QRect AreaFrame::placeOf(const CaptureFrame &frame) const
{
    return main_.areaPixels(rectOf(frame));
}

bool AreaFrame::eventFilter(QObject *window, QEvent *event)
{
    if (event->type() == QEvent::PaletteChange) {
        refresh();
    }
    return QObject::eventFilter(window, event);
}

void AreaFrame::refresh()
{
    if (!marks_) {
        return;
    }
    if (area_.isEmpty()) {
        marks_->hide();
        return;
    }
    QRegion clear(area_);
    for (const QRect &place : coming_) {
        clear += place;
    }
    for (const Seen &seen : seen_) {
        clear += seen.place;
    }
    const QPalette palette = QGuiApplication::palette();
    const auto picture
        = layOutFrame({.area = goal_ ? placeOf(*goal_) : area_,
                       .clear = clear,
                       .desktop = desktop_,
                       .scale = main_.scale,
                       .color = model_.isPaused() ? systemOrange(palette) : systemBlue(palette),
                       .hasHandle = backend_.areaDrag != AreaDrag::Impossible});
    if (!drag_) {
        handle_ = picture.handle;
    }
    marks_->present(picture);
}

void AreaFrame::keepClear(const QRect &place)
{
    seen_.push_back({.place = place, .until = QDeadlineTimer(settlingTime)});
    if (!forgetting_.isActive()) {
        forgetting_.start(settlingTime / 5);
    }
}

void AreaFrame::forget()
{
    if (std::erase_if(seen_, [](const Seen &seen) { return seen.until.hasExpired(); }) > 0) {
        refresh();
    }
    if (!seen_.empty()) {
        forgetting_.start(settlingTime / 5);
    }
}

QCoro::Task<SharingSession::Result> AreaFrame::move(CaptureFrame frame, bool saves)
{
    if (!marks_ || area_.isEmpty() || flawOf(frame, *backend_.displays)) {
        co_return co_await model_.moveSharing(frame, saves);
    }
    const QPointer self(this);
    const QRect place = placeOf(frame);
    interruptDrag(place);
    coming_.push_back(place);
    refresh();
    co_await pause(redrawTime);
    if (!self) {
        co_return SharingSession::Result();
    }
    const auto moved = co_await model_.moveSharing(frame, saves);
    if (self) {
        coming_.erase(std::ranges::find(coming_, place));
        keepClear(place); // if it is refused, or overtaken, nobody may know how far it has come
        refresh();
    }
    co_return moved;
}

void AreaFrame::handle(const PointerEvent &event)
{
    using Kind = PointerEvent::Kind;
    const auto shared = model_.sharedFrame();
    if (event.kind == Kind::Press && shared) {
        drag_ = {.frame = goal_.value_or(*shared), .pointer = event.position};
    } else if (drag_) {
        goal_ = draggedTo(event.position);
        if (event.kind == Kind::Release) {
            drag_.reset();
        }
        if (!drag_ || backend_.areaDrag == AreaDrag::Follows) {
            follow();
        } else {
            refresh(); // shows where the area will be
        }
    }
}

/** If the area moves otherwise, a handle that stays during a drag might get into it. */
void AreaFrame::interruptDrag(const QRect &place)
{
    if (marks_ && drag_ && backend_.areaDrag == AreaDrag::MovesAtEnd && place.intersects(handle_)) {
        drag_.reset();
        goal_.reset();
        marks_->hide();
    }
}

/** As far onto the displays as it was when the drag began, or more. */
CaptureFrame AreaFrame::draggedTo(QPoint pointer) const
{
    const QRect from = placeOf(drag_->frame);
    const QRect room = desktop_.boundingRect().united(from);
    const QPoint distance = pointer - drag_->pointer;
    const int x = std::clamp(distance.x(), room.left() - from.left(), room.right() - from.right());
    const int y = std::clamp(distance.y(), room.top() - from.top(), room.bottom() - from.bottom());
    // Areas have whole points where people place them.
    CaptureFrame frame = drag_->frame;
    frame.x += std::trunc(x / main_.scale);
    frame.y -= std::trunc(y / main_.scale);
    return frame;
}

/** Moves the area until it is where the drag is. */
QCoro::Task<> AreaFrame::follow()
{
    if (std::exchange(isFollowing_, true)) {
        co_return;
    }
    const QPointer self(this);
    // A drag may begin before the area is where the previous one has left it.
    const auto waits = [this] { return drag_ && backend_.areaDrag == AreaDrag::MovesAtEnd; };
    while (goal_ && goal_ != model_.sharedFrame() && !waits()) {
        const CaptureFrame next = *goal_;
        const auto moved = co_await move(next, false);
        if (!self) {
            co_return;
        }
        if (!moved) {
            qCInfo(appLog, "the drag ends: %s", qPrintable(moved.error().text));
            drag_.reset();
            goal_.reset();
        }
    }
    isFollowing_ = false;
    if (!drag_) {
        goal_.reset();
    }
    refresh();
}

} // namespace glimmerpane
