// SPDX-License-Identifier: MIT
#pragma once

#include "capture/ClickHighlights.h"
#include "capture/FrameCounter.h"
#include "platform/Backend.h"
#include "services/ServiceInterfaces.h"

#include <QObject>

#include <memory>
#include <vector>

namespace glimmerpane
{

/** The service's own failures. */
enum class CaptureError {
    noDisplayFound,
};

/** What the user is told about a failure without a text of its own: its type and number. */
QString describe(CaptureError error);

/** The stream configuration for an area; `displayHeight` is in points. */
StreamConfiguration streamConfiguration(const CaptureFrame &frame, double displayHeight);

/**
 * Shows one rectangle of the primary display live inside a window. All fields belong to the main
 * thread.
 */
class ScreenCaptureService : public QObject, public CaptureServiceProtocol
{
    Q_OBJECT

public:
    explicit ScreenCaptureService(Backend backend);
    ~ScreenCaptureService() override;
    Q_DISABLE_COPY_MOVE(ScreenCaptureService)

    void setOnCaptureEnded(EndHandler handler) override;
    QCoro::Task<StartResult> startCapture(CaptureFrame frame,
                                          std::shared_ptr<SharingWindow> window) override;
    QCoro::Task<StartResult> moveCapture(CaptureFrame frame) override;
    void pauseCapture(PausePicture picture) override;
    void stopCapture() override;
    CaptureStatistics statistics() const override;

private:
    /** Identifies one start and everything that follows from it. */
    using Run = int;

    std::expected<void, Error> setupPreviewLayer(SharingWindow &window);
    std::unique_ptr<CaptureStream> makeStream(const CaptureFrame &frame,
                                              const MainDisplay &display) const;
    QCoro::Task<StartResult> switchStream(CaptureFrame frame);
    bool takesFrames(const std::shared_ptr<CaptureStream> &stream);
    void handleEnd(const std::shared_ptr<CaptureStream> &stream, const Error &error);
    void endRun();
    void showPausePicture();
    QCoro::Task<std::expected<bool, Error>> begin(std::shared_ptr<CaptureStream> stream);
    CaptureStream::Handlers handlers(const std::shared_ptr<CaptureStream> &stream);
    void show(const SampleBuffer &sample, CaptureStream &stream);
    void installClickMonitor();
    void handleGlobalClick(QPoint desktopPixel);
    const QImage &ring();

    const Backend backend_;
    EndHandler onCaptureEnded_;
    std::shared_ptr<CaptureStream> stream_; ///< set once it has started
    std::shared_ptr<CaptureStream> nextStream_; ///< replaces it with its first frame
    std::unique_ptr<DisplayLayer> previewLayer_;
    std::unique_ptr<ClickHighlights> highlights_; ///< on the preview layer
    std::unique_ptr<PressMonitor> clickMonitor_; ///< from a successful start to the stop
    std::weak_ptr<SharingWindow> window_;
    FrameCounter frames_; ///< of this run
    QRect source_; ///< the area's current position, desktop pixels
    double scale_ = 1; ///< pixels per point
    bool isPlain_ = false; ///< the window shows the picture of a pause
    QImage ring_; ///< of clicks
    QColor ringColor_;
    Run run_ = 0;
    std::vector<std::shared_ptr<CaptureStream>> starting_; ///< whose start is pending
};

} // namespace glimmerpane
