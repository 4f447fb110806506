// SPDX-License-Identifier: MIT
#include "platform/pipewire/VideoStream.h"

#include "platform/Answer.h"
#include "platform/pipewire/MessagePipe.h"
#include "platform/pipewire/VideoLoop.h"

#include <QCoroFuture>

#include <utility>

namespace glimmerpane::pipewire
{

namespace
{

using StartResult = std::expected<void, Error>;

/** The same handlers, but the first frame, or an error before it, ends the start. */
CaptureStream::Handlers reporting(const std::shared_ptr<Answer<StartResult>> &answer,
                                  CaptureStream::Handlers handlers)
{
    return {.didOutputSampleBuffer =
                [=](SampleBuffer sample) {
                    answer->give({});
                    handlers.didOutputSampleBuffer(std::move(sample));
                },
            .didStopWithError =
                [=](const Error &error) {
                    if (!answer->give(std::unexpected(error))) {
                        handlers.didStopWithError(error);
                    }
                }};
}

} // namespace

VideoStream::VideoStream(VideoNode node, std::shared_ptr<QThreadPool> background)
    : node_(std::move(node))
    , background_(std::move(background))
{
}

VideoStream::~VideoStream()
{
    stopCapture();
}

QCoro::Task<StartResult> VideoStream::startCapture(Handlers handlers)
{
    messages_ = MessagePipe::create();
    if (!messages_) {
        co_return std::unexpected(
            Error{.text = Error::tr("The system has no file descriptors left."),
                  .log = QStringLiteral("pipe2 failed")});
    }
    const auto answer = std::make_shared<Answer<StartResult>>();
    auto started = answer->future();
    thread_.reset(QThread::create([node = std::move(node_), messages = messages_, answer,
                                   handlers = reporting(answer, std::move(handlers))]() mutable {
        VideoLoop(std::move(node), messages, std::move(handlers)).run();
        answer->give(std::unexpected(Error{
            .text = Error::tr("Sharing was stopped."), .log = {}, .outcome = Outcome::cancelled}));
    }));
    thread_->setObjectName(QStringLiteral("captureQueue"));
    thread_->start();
    co_return co_await started;
}

void VideoStream::stopCapture()
{
    if (thread_) {
        messages_->send({.kind = Message::Kind::Stop});
        background_->start(
            [thread = std::shared_ptr<QThread>(std::move(thread_))] { thread->wait(); });
    }
}

void VideoStream::returnSampleBuffer(const SampleBuffer &sample)
{
    // The pointer is part of every frame, so it needs no rectangle.
    messages_->send({.kind = Message::Kind::Show, .rectangle = sample.changed.boundingRect()});
}

void VideoStream::invalidate()
{
    constexpr QRect everything(0, 0, 0x7fff, 0x7fff); // more than a picture can have
    if (messages_) {
        messages_->send({.kind = Message::Kind::Show, .rectangle = everything});
    }
}

void VideoStream::moveTo(QRect area)
{
    if (messages_) {
        messages_->send({.kind = Message::Kind::Move, .rectangle = area});
    }
}

} // namespace glimmerpane::pipewire
