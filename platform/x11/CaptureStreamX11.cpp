// SPDX-License-Identifier: MIT
#include "platform/x11/CaptureStreamX11.h"

#include <QCoroFuture>

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace glimmerpane::x11
{

namespace
{

// Everything: only the loop knows the area's current position. Coordinates are INT16 in the X
// protocol.
constexpr QRect everything(QPoint(-0x8000, -0x8000), QPoint(0x7fff, 0x7fff));

CaptureSource sourceOf(const ContentFilter &filter, const StreamConfiguration &configuration)
{
    return {.area = flipped(configuration.sourceRect, filter.display.frame().height),
            .scale = filter.display.scale,
            .showsCursor = configuration.showsCursor,
            .minimumFrameInterval = configuration.minimumFrameInterval.duration()};
}

} // namespace

CaptureStreamX11::CaptureStreamX11(const ContentFilter &filter,
                                   const StreamConfiguration &configuration,
                                   std::shared_ptr<QThreadPool> background)
    : source_(sourceOf(filter, configuration))
    , thread_(std::move(background))
{
}

CaptureStreamX11::~CaptureStreamX11()
{
    stopCapture();
}

QCoro::Task<std::expected<void, Error>> CaptureStreamX11::startCapture(Handlers handlers)
{
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        co_return std::unexpected(
            Error{.text = Error::tr("The system has no file descriptors left."),
                  .log = QStringLiteral("pipe2: %1").arg(qt_error_string(errno))});
    }
    orderReader_ = std::make_shared<const FileDescriptor>(ends[0]);
    orderWriter_ = FileDescriptor(ends[1]);
    auto open = [source = source_, reader = orderReader_, handlers = std::move(handlers)] {
        return CaptureLoop::create(source, reader->get(), handlers);
    };
    auto started = thread_.start(std::move(open));
    co_return co_await started;
}

void CaptureStreamX11::stopCapture()
{
    if (thread_.isStarted()) {
        orderWriter_ = FileDescriptor();
        thread_.finish();
    }
}

void CaptureStreamX11::returnSampleBuffer(const SampleBuffer &sample)
{
    QRect again = sample.changed.boundingRect();
    if (sample.pointer) {
        again |= QRect(sample.pointer->topLeft, sample.pointer->image.size());
    }
    // A frame in which the pointer merely left the picture has no rectangles.
    send({.redraw = again.isEmpty() ? sample.source : again, .area = std::nullopt});
}

void CaptureStreamX11::invalidate()
{
    send({.redraw = everything, .area = std::nullopt});
}

bool CaptureStreamX11::move(const Rect &area)
{
    return send({.redraw = {}, .area = area});
}

bool CaptureStreamX11::send(const CaptureOrder &order) const
{
    // A pipe takes such a small write completely or not at all. It can only fail if the pipe is
    // full of a thousand unread orders.
    return write(orderWriter_.get(), &order, sizeof order) == sizeof order;
}

} // namespace glimmerpane::x11
