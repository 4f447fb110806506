// SPDX-License-Identifier: MIT
#include "platform/gnome/GnomeStream.h"

#include "platform/Log.h"
#include "platform/bus/BusSignal.h"
#include "platform/gnome/StageSize.h"

#include <QPointer>

#include <algorithm>
#include <utility>

namespace glimmerpane::gnome
{

namespace
{

/** The smallest whole rectangle that contains this one, but for errors of the arithmetic. */
QRect outward(const QRectF &rectangle)
{
    constexpr double error = 1e-6;
    return rectangle.adjusted(error, error, -error, -error).toAlignedRect();
}

/** Finds an area in pictures of the recorded units. */
auto partOf(QRect units, double pixelsPerUnit)
{
    return [=](QSize picture, QRect area) {
        const double scale = double(picture.width()) / units.width();
        const QPointF place = QPointF(area.topLeft()) / pixelsPerUnit - units.topLeft();
        return QRect((place * scale).toPoint(),
                     (QSizeF(area.size()) / pixelsPerUnit * scale).toSize());
    };
}

} // namespace

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
    const QSizeF stage = co_await stageSize();
    if (!self) {
        co_return std::unexpected(stopped());
    }
    const double scale = pixelsPerUnit(stage);
    const QRect units
        = outward(QRectF(QPointF(pixels->topLeft()) / scale, QSizeF(pixels->size()) / scale));
    auto recording = co_await GnomeRecording::start(units, configuration_.showsCursor, closed);
    if (!self || isStopped() || attempt != attempt_) {
        co_return std::unexpected(stopped());
    }
    if (!recording) {
        co_return std::unexpected(recording.error());
    }
    recording_ = std::move(*recording);
    qCInfo(platformLog) << "GNOME records" << units << "as node" << recording_->node();
    pipewire::VideoNode node{.id = recording_->node(),
                             .remote = {},
                             .area = *pixels,
                             .partOf = partOf(units, scale),
                             .minimumFrameInterval
                             = configuration_.minimumFrameInterval.duration()};
    co_return co_await play(std::move(node));
}

/** Of Xwayland, for each unit of the stage; both begin at the same corner. */
double GnomeStream::pixelsPerUnit(QSizeF stage) const
{
    QRect all;
    for (const Display &display : displays_->displays()) {
        all |= display.pixels;
    }
    return stage.isEmpty() || all.isEmpty() ? 1 : (all.right() + 1) / stage.width();
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
