// SPDX-License-Identifier: MIT
#include "platform/wlroots/CaptureStreamWlroots.h"

#include "platform/wlroots/ScreencopyLoop.h"

#include <QCoroFuture>

#include <utility>

namespace glimmerpane::wlroots
{

namespace
{

// Everything: only the loop knows the picture's size.
constexpr QRect everything(QPoint(0, 0), QPoint(0x7fff, 0x7fff));

CaptureSource sourceOf(const ContentFilter &filter, const StreamConfiguration &configuration)
{
    return {.area = flipped(configuration.sourceRect, filter.display.frame().height),
            .display = filter.display,
            .showsPointer = configuration.showsCursor,
            .minimumFrameInterval = configuration.minimumFrameInterval.duration()};
}

} // namespace

CaptureStreamWlroots::CaptureStreamWlroots(const ContentFilter &filter,
                                           const StreamConfiguration &configuration,
                                           std::shared_ptr<QThreadPool> background)
    : source_(std::make_unique<const CaptureSource>(sourceOf(filter, configuration)))
    , thread_(std::move(background))
{
}

CaptureStreamWlroots::~CaptureStreamWlroots()
{
    stopCapture();
}

QCoro::Task<std::expected<void, Error>> CaptureStreamWlroots::startCapture(Handlers handlers)
{
    commands_ = CommandPipe::create();
    if (!commands_) {
        co_return std::unexpected(
            Error{.text = Error::tr("The system has no file descriptors left."),
                  .log = QStringLiteral("pipe2: %1").arg(qt_error_string(errno))});
    }
    auto open = [source = *source_, commands = commands_, handlers = std::move(handlers)] {
        return ScreencopyLoop::create(source, commands, handlers);
    };
    auto started = thread_.start(std::move(open));
    co_return co_await started;
}

void CaptureStreamWlroots::stopCapture()
{
    if (thread_.isStarted()) {
        commands_->send({.kind = Command::Kind::Stop, .rectangle = {}});
        thread_.finish();
    }
}

void CaptureStreamWlroots::returnSampleBuffer(const SampleBuffer &sample)
{
    const bool hasPixels = std::holds_alternative<MappedPixels>(sample.picture);
    commands_->send({.kind = hasPixels ? Command::Kind::Resend : Command::Kind::Show,
                     .rectangle = sample.changed.boundingRect()});
}

void CaptureStreamWlroots::invalidate()
{
    commands_->send({.kind = Command::Kind::Show, .rectangle = everything});
}

bool CaptureStreamWlroots::move(const Rect &area)
{
    commands_->send({.kind = Command::Kind::Move, .rectangle = {}, .area = area});
    return true;
}

} // namespace glimmerpane::wlroots
