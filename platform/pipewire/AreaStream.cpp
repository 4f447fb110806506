// SPDX-License-Identifier: MIT
#include "platform/pipewire/AreaStream.h"

#include "platform/Log.h"

#include <QPointer>

#include <algorithm>
#include <utility>

namespace glimmerpane::pipewire
{

AreaStream::AreaStream(std::shared_ptr<AreaRecorder> recorder, std::shared_ptr<Displays> displays,
                       const ContentFilter &filter, const StreamConfiguration &configuration,
                       StreamEnvironment environment)
    : RecordedStream(std::move(environment))
    , recorder_(std::move(recorder))
    , displays_(std::move(displays))
    , area_(flipped(configuration.sourceRect, filter.display.frame().height))
    , configuration_(configuration)
{
}

AreaStream::~AreaStream() = default;

QCoro::Task<AreaStream::Result> AreaStream::begin()
{
    const QPointer self(this);
    auto result = co_await record(++attempt_);
    if (result && self && !isStopped()) {
        displayWatch_ = std::make_unique<DisplayWatch>();
        connect(displayWatch_.get(), &DisplayWatch::changed, this, &AreaStream::followDisplays);
    }
    co_return result;
}

/** Records the area where it is now, instead of any earlier recording. */
QCoro::Task<AreaStream::Result> AreaStream::record(int attempt)
{
    pause();
    recording_.reset();
    const auto pixels = areaPixels();
    if (!pixels) {
        co_return std::unexpected(pixels.error());
    }
    recorded_ = *pixels;
    const QPointer self(this);
    // Not a temporary: GCC 12 destroys a lambda in the awaited expression twice.
    const std::function<void(const Error &)> ended = [self, attempt](const Error &error) {
        if (self && attempt == self->attempt_) {
            self->recordingEnded(error);
        }
    };
    auto recording = co_await recorder_->record(*pixels, configuration_.showsCursor, ended);
    if (!self || isStopped() || attempt != attempt_) {
        co_return std::unexpected(stopped());
    }
    if (!recording) {
        co_return std::unexpected(recording.error());
    }
    recording_ = std::move(*recording);
    qCInfo(platformLog) << "the desktop records" << *pixels << "as node" << recording_->node;
    VideoNode node{.id = recording_->node,
                   .remote = {},
                   .area = *pixels,
                   .partOf = [part = recording_->part](QSize picture,
                                                       QRect /*area*/) { return part(picture); },
                   .minimumFrameInterval = configuration_.minimumFrameInterval.duration(),
                   .tellsChanges = recording_->tellsChanges};
    co_return co_await play(std::move(node));
}

std::expected<QRect, Error> AreaStream::areaPixels() const
{
    const auto all = displays_->displays();
    const auto main = displays_->mainDisplay();
    const QRect area = main ? main->areaPixels(area_) : QRect();
    if (std::ranges::none_of(
            all, [area](const Display &display) { return display.pixels.intersects(area); })) {
        return std::unexpected(
            Error{.text = Error::tr("The area is not on any display. Move it onto one."),
                  .log = QStringLiteral("no monitor is under the area")});
    }
    return area;
}

QCoro::Task<> AreaStream::followDisplays()
{
    const auto now = areaPixels();
    if (isStopped() || (now && *now == recorded_)) {
        co_return;
    }
    const QPointer self(this);
    const int attempt = ++attempt_;
    const auto result = co_await record(attempt);
    if (self && attempt == attempt_ && !result) {
        end(result.error());
    }
}

void AreaStream::release()
{
    recording_.reset();
}

} // namespace glimmerpane::pipewire
