// SPDX-License-Identifier: MIT
#include "storage/FrameRepository.h"

#include "storage/CaptureFrameJson.h"

#include <QtConcurrent>

#include <utility>

namespace glimmerpane
{

namespace
{

/** How long the user is kept waiting; another process may hold the file's lock for a second. */
constexpr int longestWait = 2000; // milliseconds

} // namespace

FrameRepository::FrameRepository(SettingsFile file, std::chrono::milliseconds typingPause)
    : file_(std::move(file))
{
    thread_.setMaxThreadCount(1);
    typingPause_.setSingleShot(true);
    typingPause_.setInterval(typingPause);
    connect(&typingPause_, &QTimer::timeout, this, &FrameRepository::write);
    connect(&writing_, &QFutureWatcherBase::finished, this, &FrameRepository::write);
}

FrameRepository::~FrameRepository()
{
    finish();
}

std::optional<CaptureFrame> FrameRepository::load()
{
    const auto json = file_.read();
    return json ? captureFrameFromJson(*json) : std::nullopt;
}

void FrameRepository::save(const CaptureFrame &frame, Pace pace)
{
    auto json = toJson(frame);
    if (!json) {
        return;
    }
    waiting_ = std::move(json);
    switch (pace) {
    case Pace::WhenTypingRests:
        typingPause_.start();
        break;
    case Pace::AtOnce:
        allWritten();
        break;
    case Pace::BeforeReturn:
        finish(longestWait);
        break;
    }
}

QFuture<void> FrameRepository::allWritten()
{
    typingPause_.stop();
    // One promise per caller, because a future can have only one continuation.
    QPromise<void> &asker = askers_.emplace_back();
    asker.start();
    auto future = asker.future();
    write();
    return future;
}

void FrameRepository::finish(int limit)
{
    typingPause_.stop();
    thread_.waitForDone(limit); // a write in progress comes first
    write();
    thread_.waitForDone(limit);
}

void FrameRepository::write()
{
    if (!writing_.future().isFinished() || typingPause_.isActive()) {
        return; // called again when the write is done
    }
    if (waiting_) {
        writing_.setFuture(QtConcurrent::run(
            &thread_, [file = file_, json = *std::exchange(waiting_, {})] { file.write(json); }));
    } else {
        for (QPromise<void> &asker : std::exchange(askers_, {})) {
            asker.finish();
        }
    }
}

} // namespace glimmerpane
