// SPDX-License-Identifier: MIT
#include "model/SharingSession.h"

#include "model/AreaFlaw.h"
#include "model/Log.h"

#include <QPointer>

#include <utility>

namespace glimmerpane
{

namespace
{

using Result = SharingSession::Result;

Error nothingShared()
{
    return {.text = Error::tr("Nothing is being shared."), .log = {}};
}

Error overtaken()
{
    return {.text = Error::tr("Sharing was paused or stopped before it went on."),
            .log = {},
            .outcome = Outcome::cancelled};
}

} // namespace

SharingSession::SharingSession(CaptureServiceProtocol &capture,
                               const WindowCoordinatorProtocol &windows, Backend backend)
    : capture_(capture)
    , windows_(windows)
    , backend_(std::move(backend))
{
}

void SharingSession::open(const CaptureFrame &frame, std::shared_ptr<SharingWindow> window)
{
    abandon();
    window_ = window;
    frame_ = frame;
    setState(State::Starting);
}

void SharingSession::started()
{
    if (state_ == State::Starting) {
        setState(State::Running);
    }
}

void SharingSession::close()
{
    abandon();
    setState(State::Closed);
}

std::optional<CaptureFrame> SharingSession::frame() const
{
    const bool isShown = state_ == State::Running || isPaused();
    return isShown ? std::optional(frame_) : std::nullopt;
}

bool SharingSession::isOpen() const
{
    return state_ != State::Closed && windows_.isSharingWindowVisible();
}

void SharingSession::setState(State state)
{
    const bool wasPaused = isPaused();
    const bool hadFrame = frame().has_value();
    state_ = state;
    if (frame().has_value() != hadFrame) {
        Q_EMIT frameChanged();
    }
    if (isPaused() != wasPaused) {
        qCInfo(modelLog, isPaused() ? "paused" : "not paused any more");
        Q_EMIT pausedChanged();
    }
}

void SharingSession::setFrame(const CaptureFrame &frame)
{
    if (std::exchange(frame_, frame) != frame) {
        Q_EMIT frameChanged();
    }
}

/** A pending move or resumption finds that its step is over. */
void SharingSession::abandon()
{
    ++step_;
    goal_.reset();
    if (state_ == State::Resuming) {
        backend_.screen->withdrawRequest();
    }
}

QCoro::Task<Result> SharingSession::move(CaptureFrame frame)
{
    if (!isOpen() || state_ == State::Starting) {
        co_return std::unexpected(nothingShared());
    }
    if (const auto flaw = flawOf(frame, *backend_.displays)) {
        co_return std::unexpected(*flaw);
    }
    if (isPaused()) {
        setFrame(frame);
        co_return Result();
    }
    if (std::exchange(goal_, frame)) {
        co_return Result(); // the pending move goes on to there
    }
    const QPointer self(this);
    const int step = step_;
    while (true) {
        const CaptureFrame next = *goal_;
        const auto moved = co_await capture_.moveCapture(next);
        if (!self || step != step_) {
            co_return Result(); // a pause has taken over the goal
        }
        if (moved) {
            setFrame(next);
        }
        if (goal_ == next) {
            goal_.reset();
            co_return moved;
        }
    }
}

Result SharingSession::pause(PausePicture picture)
{
    if (!isOpen()) {
        return std::unexpected(nothingShared());
    }
    if (state_ == State::Paused && picture == PausePicture::Latest) {
        return {};
    }
    const CaptureFrame latest = goal_.value_or(frame_);
    abandon();
    capture_.pauseCapture(picture);
    setState(State::Paused);
    setFrame(latest);
    return {};
}

QCoro::Task<Result> SharingSession::resume()
{
    if (!isOpen()) {
        co_return std::unexpected(nothingShared());
    }
    if (state_ != State::Paused) {
        co_return Result();
    }
    if (const auto flaw = flawOf(frame_, *backend_.displays)) {
        co_return std::unexpected(*flaw);
    }
    const QPointer self(this);
    const int step = step_;
    const CaptureFrame frame = frame_;
    setState(State::Resuming);
    const auto restarted = co_await restart(frame, window_.lock());
    if (!self || step != step_) {
        co_return std::unexpected(overtaken());
    }
    setState(restarted ? State::Running : State::Paused);
    if (restarted && frame_ != frame) {
        const CaptureFrame moved = std::exchange(frame_, frame);
        co_return co_await move(moved);
    }
    co_return restarted;
}

QCoro::Task<Result> SharingSession::restart(CaptureFrame frame,
                                            std::shared_ptr<SharingWindow> window)
{
    const QPointer self(this);
    const int step = step_;
    const Rect area = rectOf(frame);
    const auto content = co_await backend_.screen->shareableContent(area);
    if (!self || step != step_) {
        co_return std::unexpected(overtaken());
    }
    if (!content) {
        co_return std::unexpected(content.error());
    }
    const auto started = co_await capture_.startCapture(frame, window);
    if (self && step == step_ && !started) {
        backend_.screen->withdrawRequest(); // what was granted is not needed any more
    }
    co_return started;
}

} // namespace glimmerpane
