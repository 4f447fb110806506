// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DisplayWatch.h"
#include "platform/Displays.h"
#include "platform/pipewire/RecordedStream.h"

#include <QRect>

#include <cstdint>
#include <functional>
#include <memory>

namespace glimmerpane::pipewire
{

/** What the desktop keeps for a recording, which ends with the object. */
class RecordingSession
{
public:
    RecordingSession() = default;
    Q_DISABLE_COPY_MOVE(RecordingSession)
    virtual ~RecordingSession() = default;
};

/** A running recording of a rectangle of the desktop. */
struct AreaRecording {
    std::uint32_t node = 0; ///< PipeWire's
    /** Which part of a picture of this size the rectangle is, pixels. Called on any thread. */
    std::function<QRect(QSize picture)> part;
    std::unique_ptr<RecordingSession> session;
    bool tellsChanges = true; ///< see VideoNode
};

/** Has the desktop record rectangles. */
class AreaRecorder
{
public:
    using Result = std::expected<AreaRecording, Error>;

    virtual ~AreaRecorder() = default;

    /**
     * Starts to record a rectangle of the desktop, in its pixels. `ended` is called when the
     * recording ends by itself: as cancelled if that is the user's wish, as unavailable if nothing
     * else can be the reason.
     */
    virtual QCoro::Task<Result> record(QRect area, bool showsCursor,
                                       std::function<void(const Error &)> ended)
        = 0;
};

/**
 * A capture stream of an area that the desktop records. When displays change, it is recorded where
 * it is then.
 */
class AreaStream final : public RecordedStream
{
    Q_OBJECT

public:
    AreaStream(std::shared_ptr<AreaRecorder> recorder, std::shared_ptr<Displays> displays,
               const ContentFilter &filter, const StreamConfiguration &configuration,
               StreamEnvironment environment);
    ~AreaStream() override;

private:
    QCoro::Task<Result> begin() override;
    void release() override;
    QCoro::Task<Result> record(int attempt);
    std::expected<QRect, Error> areaPixels() const;
    QCoro::Task<> followDisplays();

    const std::shared_ptr<AreaRecorder> recorder_;
    const std::shared_ptr<Displays> displays_;
    const Rect area_; ///< points, desktop coordinates
    const StreamConfiguration configuration_;
    std::optional<AreaRecording> recording_;
    std::unique_ptr<DisplayWatch> displayWatch_;
    int attempt_ = 0; ///< counts recordings; displays may change while one starts
    QRect recorded_; ///< desktop pixels
};

} // namespace glimmerpane::pipewire
