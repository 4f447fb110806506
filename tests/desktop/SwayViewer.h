// SPDX-License-Identifier: MIT
#pragma once

#include "platform/wlroots/ScreenSourceWlroots.h"
#include "rig/PictureComparison.h"
#include "rig/SwayServer.h"
#include "rig/WaitFor.h"

#include <QCoroTask>

#include <cstring>
#include <functional>

namespace glimmerpane::testing
{

/** A viewer of a stream: a picture that takes over what each frame says has changed. */
class SwayViewer
{
public:
    static constexpr QRect screen{0, 0, 1280, 720};
    static constexpr auto patience = std::chrono::seconds(5);

    explicit SwayViewer(const SwayServer &server)
        : server_(server)
    {
        qputenv("WAYLAND_DISPLAY", server.socket().toLocal8Bit());
    }
    ~SwayViewer()
    {
        if (stream) {
            stream->stopCapture();
        }
    }
    Q_DISABLE_COPY_MOVE(SwayViewer)

    std::expected<void, Error> watch(QRect rectangle)
    {
        place = rectangle;
        stream = source.makeCaptureStream(
            {.display = {.pixels = screen, .scale = 1}},
            {.sourceRect = {double(rectangle.x()), double(rectangle.y()), double(rectangle.width()),
                            double(rectangle.height())},
             .showsCursor = true});
        const auto onMainThread = [this](auto work) {
            QMetaObject::invokeMethod(&context_, std::move(work), Qt::QueuedConnection);
        };
        return QCoro::waitFor(stream->startCapture(
            {.didOutputSampleBuffer
             = [=, this](
                   const SampleBuffer &sample) { onMainThread([this, sample] { show(sample); }); },
             .didStopWithError
             = [=, this](
                   const Error &error) { onMainThread([this, error] { ends = error.text; }); }}));
    }

    /** Whether it comes to show what grim reads there. */
    bool showsPlace() const
    {
        return becomeEqual([this] { return picture; },
                           [this] { return server_.screenshot(place, SwayServer::Pointer::Shown); },
                           patience);
    }

    /** Handles what is on its way: returns once a request to show all again has come back. */
    bool settle()
    {
        const int before = repeated;
        stream->invalidate();
        return waitFor([&] { return repeated > before; }, patience);
    }

    wlroots::ScreenSourceWlroots source;
    std::unique_ptr<CaptureStream> stream;
    QRect place;
    QImage picture;
    std::vector<QRegion> changes; ///< of the frames with pixels
    int repeated = 0; ///< frames without
    int returning = 0; ///< this many frames are returned
    std::vector<SampleBuffer> kept; ///< while keeps
    bool keeps = false;
    QString ends;
    std::function<void()> onPicture = [] { }; ///< after each frame with pixels

private:
    void show(const SampleBuffer &sample)
    {
        if (returning > 0) {
            --returning;
            stream->returnSampleBuffer(sample);
            return;
        }
        if (keeps) {
            kept.push_back(sample);
        }
        const auto *const pixels = std::get_if<MappedPixels>(&sample.picture);
        if (pixels == nullptr) {
            ++repeated;
            return;
        }
        if (picture.size() != pixels->size) {
            picture = QImage(pixels->size, QImage::Format_RGB32);
            picture.fill(Qt::magenta);
        }
        changes.push_back(sample.changed);
        for (const QRect &part : sample.changed) {
            for (int y = part.top(); y <= part.bottom(); ++y) {
                std::memcpy(picture.scanLine(y) + 4 * part.x(),
                            pixels->data + y * pixels->stride + 4 * part.x(),
                            4 * size_t(part.width()));
            }
        }
        onPicture();
    }

    const SwayServer &server_;
    QObject context_;
};

} // namespace glimmerpane::testing
