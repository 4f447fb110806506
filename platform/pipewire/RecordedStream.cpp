// SPDX-License-Identifier: MIT
#include "platform/pipewire/RecordedStream.h"

#include "platform/Log.h"

#include <QCoreApplication>
#include <QPointer>
#include <QTimer>

#include <utility>

namespace glimmerpane::pipewire
{

namespace
{

using namespace std::chrono_literals;

} // namespace

Error RecordedStream::stopped()
{
    return {.text = Error::tr("Sharing was stopped."), .log = {}, .outcome = Outcome::cancelled};
}

RecordedStream::RecordedStream(StreamEnvironment environment)
    : environment_(std::move(environment))
{
}

QCoro::Task<RecordedStream::Result> RecordedStream::startCapture(Handlers handlers)
{
    handlers_ = std::move(handlers);
    const QPointer self(this);
    auto result = co_await begin();
    if (!self) {
        co_return std::unexpected(stopped());
    }
    if (end_) {
        co_return std::unexpected(*end_);
    }
    isStarted_ = result.has_value();
    co_return result;
}

QCoro::Task<RecordedStream::Result> RecordedStream::play(VideoNode node)
{
    node.modifiers = environment_.modifiers;
    const auto video = std::make_shared<VideoStream>(std::move(node), environment_.background);
    video_ = video;
    Handlers handlers = handlersOf(video);
    co_return co_await video->startCapture(std::move(handlers));
}

bool RecordedStream::playArea(QRect area)
{
    if (!video_ || isStopped()) {
        return false;
    }
    video_->moveTo(area);
    return true;
}

CaptureStream::Handlers RecordedStream::handlersOf(const std::shared_ptr<VideoStream> &video)
{
    const auto ended = [self = QPointer(this), video = std::weak_ptr(video)](const Error &error) {
        const auto onMainThread = [=] {
            if (self && self->video_ && self->video_ == video.lock()) {
                self->recordingEnded(error);
            }
        };
        QMetaObject::invokeMethod(QCoreApplication::instance(), onMainThread, Qt::QueuedConnection);
    };
    return {.didOutputSampleBuffer = handlers_.didOutputSampleBuffer, .didStopWithError = ended};
}

void RecordedStream::recordingEnded(const Error &error)
{
    if (error.outcome == Outcome::unavailable) {
        end(error);
    } else {
        endSoon(error);
    }
}

void RecordedStream::endedByDesktop(const QString &log)
{
    Error error = stopped();
    error.log = log;
    endSoon(error);
}

/**
 * When the user ends the recording in the desktop, PipeWire and the bus both say so; when PipeWire
 * itself ends, the desktop closes the recording, too. Waits until the real reason is known.
 */
void RecordedStream::endSoon(const Error &error)
{
    const auto otherNews = error.outcome == Outcome::cancelled ? 150ms : 500ms;
    QTimer::singleShot(otherNews, this, [this, error] { end(error); });
}

void RecordedStream::end(const Error &error)
{
    if (isStopped()) {
        return;
    }
    qCInfo(platformLog, "the recording ends: %s", qPrintable(error.log));
    end_ = error;
    if (isStarted_) {
        handlers_.didStopWithError(error);
    } else if (video_) {
        video_->stopCapture();
    }
}

void RecordedStream::stopCapture()
{
    isStopped_ = true;
    if (video_) {
        video_->stopCapture();
    }
    release();
}

void RecordedStream::returnSampleBuffer(const SampleBuffer &sample)
{
    if (video_) {
        video_->returnSampleBuffer(sample);
    }
}

void RecordedStream::invalidate()
{
    if (video_) {
        video_->invalidate();
    }
}

} // namespace glimmerpane::pipewire
