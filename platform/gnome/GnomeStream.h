// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DisplayWatch.h"
#include "platform/Displays.h"
#include "platform/gnome/GnomeRecording.h"
#include "platform/pipewire/RecordedStream.h"

#include <QRect>

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
 * pixels of Xwayland's root window, or from version 47 on a whole number of them where a monitor is
 * scaled. Measured under mutter 43 and 48 with two monitors, an area on both, at scale 2, and at
 * scale 2 by the stage (scale-monitor-framebuffer): there the pictures are twice as large as the
 * area and are reduced where they are shown; everywhere else they are exact.
 */
class GnomeStream final : public pipewire::RecordedStream
{
    Q_OBJECT

public:
    /** `background` waits for threads that have been told to stop. */
    GnomeStream(std::shared_ptr<Displays> displays, const ContentFilter &filter,
                const StreamConfiguration &configuration, std::shared_ptr<QThreadPool> background);
    ~GnomeStream() override;

private:
    QCoro::Task<Result> begin() override;
    void release() override;
    QCoro::Task<Result> record(int attempt);
    std::expected<QRect, Error> areaPixels() const;
    double pixelsPerUnit(QSizeF stage) const;
    QCoro::Task<> followDisplays();

    const std::shared_ptr<Displays> displays_;
    const Rect area_; ///< points, desktop coordinates
    const StreamConfiguration configuration_;
    std::unique_ptr<BusOwnerWatch> shell_;
    std::optional<GnomeRecording> recording_;
    std::unique_ptr<DisplayWatch> displayWatch_;
    int attempt_ = 0; ///< counts recordings; displays may change while one starts
    QRect recorded_; ///< desktop pixels
};

} // namespace glimmerpane::gnome
