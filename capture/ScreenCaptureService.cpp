// SPDX-License-Identifier: MIT
#include "capture/ScreenCaptureService.h"

#include "capture/Log.h"
#include "capture/PausePicture.h"
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
    ++run_;
    clickMonitor_.reset(); // left over from a stream that ended by itself
    stream_.reset(); // the same
    if (window_.lock() != window) {
        frames_ = {};
    }
    window_ = window;
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
    const std::shared_ptr stream = makeStream(frame, *display);
    const auto runs = co_await begin(stream);
    if (!runs) {
        co_return std::unexpected(runs.error());
    }
    if (!*runs) {
        co_return StartResult();
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
        } else if (self && self->isPlain_) {
            self->showPausePicture();
        }
    };
    isPlain_ = false;
    return {};
}

std::unique_ptr<CaptureStream> ScreenCaptureService::makeStream(const CaptureFrame &frame,
                                                                const MainDisplay &display) const
{
    return backend_.screen->makeCaptureStream({.display = display},
                                              streamConfiguration(frame, display.frame().height));
}

QCoro::Task<StartResult> ScreenCaptureService::moveCapture(CaptureFrame frame)
{
    if (stream_ && stream_->move(rectOf(frame))) {
        co_return StartResult();
    }
    co_return co_await switchStream(frame);
}

/** Starts another stream beside the present one, which it replaces with its first frame. */
QCoro::Task<StartResult> ScreenCaptureService::switchStream(CaptureFrame frame)
{
    const QPointer self(this);
    const Run run = run_;
    const Rect area = rectOf(frame);
    const auto content = co_await backend_.screen->shareableContent(area);
    if (!self || run != run_) {
        co_return StartResult();
    }
    if (!content) {
        co_return std::unexpected(content.error());
    }
    const auto display = backend_.displays->mainDisplay();
    if (!display) {
        co_return std::unexpected(Error{.text = describe(CaptureError::noDisplayFound), .log = {}});
    }
    const std::shared_ptr stream = makeStream(frame, *display);
    nextStream_ = stream;
    const auto runs = co_await begin(stream);
    if (!runs) {
        nextStream_.reset();
        co_return std::unexpected(runs.error());
    }
    if (!*runs) {
        co_return StartResult();
    }
    qCInfo(captureLog) << "another stream goes on at" << frame.x << frame.y;
    co_return StartResult();
}

/** Starts a stream for this run. False if the run, or this service, is over by then. */
QCoro::Task<std::expected<bool, Error>> ScreenCaptureService::begin(
    std::shared_ptr<CaptureStream> stream)
{
    const QPointer self(this);
    const Run run = run_;
    starting_.push_back(stream);
    const auto started = co_await stream->startCapture(handlers(stream));
    if (!self) {
        co_return false;
    }
    std::erase(starting_, stream);
    if (run != run_) {
        stream->stopCapture();
        co_return false;
    }
    if (!started) {
        co_return std::unexpected(started.error());
    }
    co_return true;
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
                        if (self && self->run_ == run && self->takesFrames(sender)) {
                            self->show(sample, *sender);
                        }
                    });
                },
            .didStopWithError =
                [=](const Error &error) {
                    onMainThread([=] {
                        qCInfo(captureLog, "the stream ended by itself");
                        if (self && self->run_ == run) {
                            self->handleEnd(weakStream.lock(), error);
                        }
                    });
                }};
}

bool ScreenCaptureService::takesFrames(const std::shared_ptr<CaptureStream> &stream)
{
    if (stream && stream == nextStream_) {
        std::exchange(stream_, std::exchange(nextStream_, nullptr))->stopCapture();
    }
    return stream && (stream == stream_ || !stream_); // there is none yet during a start
}

void ScreenCaptureService::handleEnd(const std::shared_ptr<CaptureStream> &stream,
                                     const Error &error)
{
    if (stream && stream == nextStream_) {
        nextStream_.reset();
    } else if (onCaptureEnded_ && (stream == stream_ || !stream_)) {
        if (const auto next = std::exchange(nextStream_, nullptr)) {
            next->stopCapture();
        }
        onCaptureEnded_(error);
    }
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

void ScreenCaptureService::pauseCapture(PausePicture picture)
{
    endRun();
    isPlain_ = isPlain_ || picture == PausePicture::Plain;
    if (isPlain_) {
        showPausePicture();
    }
    if (previewLayer_) {
        previewLayer_->finish();
    }
}

void ScreenCaptureService::showPausePicture()
{
    const auto window = window_.lock();
    if (window && previewLayer_) {
        const PausePictureLook look = pausePicture(window->size());
        previewLayer_->showPlain(look.background, look.text);
    }
}

void ScreenCaptureService::stopCapture()
{
    endRun();
    previewLayer_.reset();
    window_.reset();
    frames_ = {};
}

/** Nothing that is still on its way from a stream is shown any more. */
void ScreenCaptureService::endRun()
{
    // A pending start finds that its run is over and stops its stream.
    ++run_;
    clickMonitor_.reset();
    highlights_.reset();
    source_ = {};
    nextStream_.reset();
    if (stream_) {
        qCInfo(captureLog, "stopping the capture");
        std::exchange(stream_, nullptr)->stopCapture();
    }
}

} // namespace glimmerpane
