// SPDX-License-Identifier: MIT
#pragma once

#include "platform/pipewire/StreamEnvironment.h"
#include "platform/pipewire/VideoStream.h"

#include <QObject>

#include <memory>
#include <optional>

namespace glimmerpane::pipewire
{

/** A capture stream of a recording that the desktop makes, and that it can end. Main thread. */
class RecordedStream : public QObject, public CaptureStream
{
public:
    QCoro::Task<std::expected<void, Error>> startCapture(Handlers handlers) final;
    void stopCapture() final;
    void returnSampleBuffer(const SampleBuffer &sample) final;
    void invalidate() final;

protected:
    using Result = std::expected<void, Error>;

    explicit RecordedStream(StreamEnvironment environment);

    /** Obtains the recording and plays it; this object may be stopped meanwhile. */
    virtual QCoro::Task<Result> begin() = 0;
    /** Gives up the recording. */
    virtual void release() = 0;

    /** Passes on a node's pictures from now on. */
    QCoro::Task<Result> play(VideoNode node);
    /** Passes on another area, desktop pixels, of the same pictures. False if there are none. */
    bool playArea(QRect area);
    /** Passes on nothing any more, so that the recording can be replaced. */
    void pause() { video_.reset(); }
    /** The recording is over: makes a start fail, or tells the handler. Only the first time counts.
     */
    void end(const Error &error);
    /** The desktop has closed the recording, at the user's wish unless there is another reason. */
    void endedByDesktop(const QString &log);
    /** The recording has ended by itself: see AreaRecorder. */
    void recordingEnded(const Error &error);
    /** For a recording that the user, or this program, has ended. */
    static Error stopped();
    bool isStopped() const { return isStopped_ || end_; }

private:
    Handlers handlersOf(const std::shared_ptr<VideoStream> &video);
    void endSoon(const Error &error);

    const StreamEnvironment environment_;
    Handlers handlers_;
    std::shared_ptr<VideoStream> video_;
    std::optional<Error> end_; ///< why it ended by itself
    bool isStarted_ = false;
    bool isStopped_ = false;
};

} // namespace glimmerpane::pipewire
