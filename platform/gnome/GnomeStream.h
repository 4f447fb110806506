// SPDX-License-Identifier: MIT
#pragma once

#include "platform/CaptureStream.h"
#include "platform/Displays.h"
#include "platform/gnome/GnomeRecording.h"

#include <QObject>
#include <QRect>
#include <QThreadPool>
#include <QTimer>

#include <memory>
#include <optional>

namespace glimmerpane
{
class BusOwnerWatch;
}

namespace glimmerpane::gnome
{

/**
 * A capture stream of an area that GNOME's shell records.
 *
 * The shell counts in its stage's units, from the top-left corner of all monitors. Those are the
 * pixels of Xwayland's root window, at every scale (mutter 43 and 48, two monitors, scales 1 and
 * 2).
 */
class GnomeStream final : public QObject, public CaptureStream
{
    Q_OBJECT

public:
    /** `background` waits for threads that have been told to stop. */
    GnomeStream(std::shared_ptr<Displays> displays, const ContentFilter &filter,
                const StreamConfiguration &configuration, std::shared_ptr<QThreadPool> background);
    ~GnomeStream() override;

    QCoro::Task<std::expected<void, Error>> startCapture(Handlers handlers) override;
    void stopCapture() override;
    void returnSampleBuffer(const SampleBuffer &sample) override;
    void invalidate() override;

private:
    using Result = std::expected<void, Error>;

    QCoro::Task<Result> record();
    std::expected<QRect, Error> areaPixels() const;
    void watchDisplays();
    QCoro::Task<> followDisplays();
    void end(const Error &error);

    const std::shared_ptr<Displays> displays_;
    const Rect area_; ///< points, desktop coordinates
    const StreamConfiguration configuration_;
    const std::shared_ptr<QThreadPool> background_;
    Handlers handlers_;
    std::unique_ptr<BusOwnerWatch> shell_;
    std::optional<GnomeRecording> recording_;
    std::unique_ptr<CaptureStream> video_;
    QTimer displaysSettled_;
    QRect recorded_; ///< desktop pixels
    bool isStopped_ = false;
};

} // namespace glimmerpane::gnome
