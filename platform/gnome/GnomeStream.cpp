// SPDX-License-Identifier: MIT
#include "platform/gnome/GnomeStream.h"

#include "platform/Log.h"
#include "platform/bus/BusSignal.h"

#include <QPointer>

#include <algorithm>
#include <utility>

namespace glimmerpane::gnome
{

GnomeStream::GnomeStream(std::shared_ptr<Displays> displays, const ContentFilter &filter,
                         const StreamConfiguration &configuration,
                         std::shared_ptr<QThreadPool> background)
    : RecordedStream(std::move(background))
    , displays_(std::move(displays))
    , area_(flipped(configuration.sourceRect, filter.display.frame().height))
    , configuration_(configuration)
{
}

GnomeStream::~GnomeStream() = default;

QCoro::Task<GnomeStream::Result> GnomeStream::begin()
{
    shell_ = std::make_unique<BusOwnerWatch>(QStringLiteral("org.gnome.Mutter.ScreenCast"), [this] {
        end({.text = Error::tr("GNOME's screen-cast service has ended."),
             .log = QStringLiteral("org.gnome.Mutter.ScreenCast lost its owner")});
    });
    const QPointer self(this);
    auto result = co_await record(++attempt_);
    if (result && self && !isStopped()) {
        displayWatch_ = std::make_unique<DisplayWatch>();
        connect(displayWatch_.get(), &DisplayWatch::changed, this, &GnomeStream::followDisplays);
    }
    co_return result;
}

/** Records the area where it is now, instead of any earlier recording. */
QCoro::Task<GnomeStream::Result> GnomeStream::record(int attempt)
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
    const std::function<void()> closed = [self] {
        if (self) {
            self->endedByDesktop(QStringLiteral("GNOME has closed the session"));
        }
    };
    auto recording = co_await GnomeRecording::start(*pixels, configuration_.showsCursor, closed);
    if (!self || isStopped() || attempt != attempt_) {
        co_return std::unexpected(stopped());
    }
    if (!recording) {
        co_return std::unexpected(recording.error());
    }
    recording_ = std::move(*recording);
    qCInfo(platformLog) << "GNOME records" << *pixels << "as node" << recording_->node();
    pipewire::VideoNode node{
        .id = recording_->node(),
        .remote = {},
        .area = *pixels,
        .partOf = [](QSize picture, QRect /*area*/) { return QRect(QPoint(), picture); },
        .minimumFrameInterval = configuration_.minimumFrameInterval.duration()};
    co_return co_await play(std::move(node));
}

std::expected<QRect, Error> GnomeStream::areaPixels() const
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

QCoro::Task<> GnomeStream::followDisplays()
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

void GnomeStream::release()
{
    shell_.reset();
    recording_.reset();
}

} // namespace glimmerpane::gnome
