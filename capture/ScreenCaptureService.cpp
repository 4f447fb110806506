// SPDX-License-Identifier: MIT
#include "capture/ScreenCaptureService.h"

#include "capture/Log.h"
#include "capture/SharingWindow.h"
#include "platform/Palette.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QPointer>

#include <cmath>
#include <utility>

namespace glimmerpane
{

namespace
{

using StartResult = CaptureServiceProtocol::StartResult;

/** Makes a negative size positive. */
Rect rectOf(const CaptureFrame &frame)
{
    return {.x = frame.x,
            .y = frame.y,
            .width = std::abs(frame.width),
            .height = std::abs(frame.height)};
}

} // namespace

QString describe(CaptureError error)
{
    return ScreenCaptureService::tr("The operation couldn't be completed. (CaptureError error %1.)")
        .arg(static_cast<int>(error));
}

StreamConfiguration streamConfiguration(const CaptureFrame &frame, double displayHeight)
{
    const Rect area = rectOf(frame);
    return {.width = static_cast<std::int64_t>(area.width * 2),
            .height = static_cast<std::int64_t>(area.height * 2),
            .sourceRect = flipped(area, displayHeight),
            .showsCursor = true,
            .pixelFormat = pixelFormatBgra,
            .minimumFrameInterval = {.value = 1, .timescale = 60},
            .capturesAudio = false};
}

ScreenCaptureService::ScreenCaptureService(Backend backend)
    : backend_(std::move(backend))
{
}

ScreenCaptureService::~ScreenCaptureService()
{
    // A start that nobody awaits any more would leave its stream running.
    for (const auto &stream : starting_) {
        stream->stopCapture();
    }
}

void ScreenCaptureService::setOnCaptureEnded(EndHandler handler)
{
    onCaptureEnded_ = std::move(handler);
}

QCoro::Task<StartResult> ScreenCaptureService::startCapture(CaptureFrame frame,
                                                            std::shared_ptr<SharingWindow> window)
{
    const QPointer self(this);
    const Run run = ++run_;
    clickMonitor_.reset(); // left over from a stream that ended by itself
    window_ = window;
    captureFrame_ = frame;
    frames_ = {};
    if (auto ready = setupPreviewLayer(*window); !ready) {
        co_return std::unexpected(ready.error());
    }

    const auto display = backend_.displays->mainDisplay();
    if (!display) {
        co_return std::unexpected(Error{.text = describe(CaptureError::noDisplayFound), .log = {}});
    }
    source_ = display->areaPixels(rectOf(frame));
    scale_ = display->scale;
    ring_ = {};
    const std::shared_ptr stream = makeStream(*display);
    starting_.push_back(stream);
    const auto started = co_await stream->startCapture(handlers(stream));
    if (!self) {
        co_return StartResult();
    }
    std::erase(starting_, stream);
    if (run != run_) {
        stream->stopCapture();
        co_return StartResult();
    }
    if (!started) {
        co_return std::unexpected(started.error());
    }
    qCInfo(captureLog) << "capturing" << frame.width << "x" << frame.height << "points at"
                       << frame.x << frame.y;
    stream_ = stream;
    installClickMonitor();
    co_return StartResult();
}

std::expected<void, Error> ScreenCaptureService::setupPreviewLayer(SharingWindow &window)
{
    const auto content = window.content();
    if (!content) {
        return std::unexpected(content.error());
    }
    auto layer = (*content)->makeDisplayLayer();
    if (!layer) {
        return std::unexpected(layer.error());
    }
    highlights_.reset();
    previewLayer_ = std::move(*layer);
    highlights_ = std::make_unique<ClickHighlights>(*previewLayer_);
    (*content)->onContentsLost = [self = QPointer(this)] {
        if (self && self->stream_) {
            self->stream_->invalidate();
        }
    };
    return {};
}

std::unique_ptr<CaptureStream> ScreenCaptureService::makeStream(const MainDisplay &display) const
{
    return backend_.screen->makeCaptureStream(
        {.display = display}, streamConfiguration(captureFrame_, display.frame().height));
}

CaptureStream::Handlers ScreenCaptureService::handlers(const std::shared_ptr<CaptureStream> &stream)
{
    // Called on the stream's thread. Only the main thread can tell whether the service still exists
    // and is still in this run, so both are checked there.
    const auto onMainThread = [](auto work) {
        QMetaObject::invokeMethod(QCoreApplication::instance(), std::move(work),
                                  Qt::QueuedConnection);
    };
    const QPointer self(this);
    const Run run = run_;
    const std::weak_ptr weakStream(stream);
    return {.didOutputSampleBuffer =
                [=](SampleBuffer sample) {
                    onMainThread([=, sample = std::move(sample)] {
                        const auto sender = weakStream.lock();
                        if (self && self->run_ == run && sender) {
                            self->show(sample, *sender);
                        }
                    });
                },
            .didStopWithError =
                [=](const Error &error) {
                    onMainThread([=] {
                        qCInfo(captureLog, "the stream ended by itself");
                        if (self && self->run_ == run && self->onCaptureEnded_) {
                            self->onCaptureEnded_(error);
                        }
                    });
                }};
}

void ScreenCaptureService::show(const SampleBuffer &sample, CaptureStream &stream)
{
    if (!previewLayer_) {
        return;
    }
    source_ = sample.source;
    if (previewLayer_->isReadyForMoreMediaData()) {
        previewLayer_->enqueueSampleBuffer(sample);
        frames_.show(std::chrono::steady_clock::now());
    } else {
        frames_.drop();
        qCDebug(captureLog,
                "the display server is still busy with the previous frame, so this one is dropped");
        stream.returnSampleBuffer(sample);
    }
}

void ScreenCaptureService::installClickMonitor()
{
    if (!backend_.presses) {
        return;
    }
    clickMonitor_ = backend_.presses->monitor([self = QPointer(this)](QPoint desktopPixel) {
        if (self) {
            self->handleGlobalClick(desktopPixel);
        }
    });
}

void ScreenCaptureService::handleGlobalClick(QPoint desktopPixel)
{
    if (source_.contains(desktopPixel) && highlights_ && !window_.expired()) {
        highlights_->add(ring(), desktopPixel);
    }
}

/** Reuses the image as long as it looks the same, because the server caches it. */
const QImage &ScreenCaptureService::ring()
{
    const QColor blue = systemBlue(QGuiApplication::palette());
    if (ring_.isNull() || std::exchange(ringColor_, blue) != blue) {
        ring_ = clickRing(blue, scale_);
    }
    return ring_;
}

CaptureStatistics ScreenCaptureService::statistics() const
{
    return {.framesInLastSecond = frames_.inLastSecond(std::chrono::steady_clock::now()),
            .dropped = frames_.dropped()};
}

void ScreenCaptureService::stopCapture()
{
    // A pending start finds that its run is over and stops its stream.
    ++run_;
    clickMonitor_.reset();
    highlights_.reset();
    previewLayer_.reset();
    window_.reset();
    captureFrame_ = {};
    source_ = {};
    frames_ = {};
    if (stream_) {
        qCInfo(captureLog, "stopping the capture");
        std::exchange(stream_, nullptr)->stopCapture();
    }
}

} // namespace glimmerpane
