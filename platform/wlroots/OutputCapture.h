// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Frame.h"
#include "platform/FramePacer.h"
#include "platform/wlroots/CommandPipe.h"
#include "platform/wlroots/ScreencopySession.h"
#include "platform/wlroots/SharedBuffer.h"

#include <QRegion>

#include <list>

namespace glimmerpane::wlroots
{

/**
 * Pictures of a part of one output, one at a time, each once something on the output has changed.
 * The only class that knows how the compositor is asked for pictures.
 */
class OutputCapture
{
public:
    /** The part, its output as it was then, and where it is. */
    struct Source {
        std::uint32_t output = 0; ///< its global
        OutputState state;
        QRect part; ///< in the unit of window positions, from the output's top-left corner

        /** In the desktop. */
        QRect place() const { return part.translated(state.logical.topLeft()); }

        /** Then pictures are of the whole output, as its pixels lie. */
        bool isTurned() const { return state.transform != WL_OUTPUT_TRANSFORM_NORMAL; }

        friend bool operator==(const Source &, const Source &) = default;
    };

    /** The session must outlive it; `output` is only needed now. */
    OutputCapture(const ScreencopySession &session, const Output &output, QRect part,
                  bool showsPointer, std::chrono::nanoseconds interval,
                  std::shared_ptr<CommandPipe> commands);
    OutputCapture(const OutputCapture &) = delete;
    OutputCapture &operator=(const OutputCapture &) = delete;
    ~OutputCapture() = default;

    const Source &source() const { return source_; }

    /**
     * The next picture comes even if nothing changes, as the first one of an output does by itself.
     */
    void force() { isForced_ = true; }

    /** Asks for the next picture if none is on its way and one may come. */
    void request(FramePacer::TimePoint now);

    /** When request() is worth another call; null while something else has to happen first. */
    std::optional<FramePacer::TimePoint> due() const;

    /** What has changed since the last call, pixels of the picture. */
    QRegion takeChanges() { return std::exchange(changes_, QRegion()); }

    /** Since when the compositor has only failed; null if it has not. */
    std::optional<FramePacer::TimePoint> failingSince() const { return failingSince_; }

    bool hasPicture() const { return latest_ != nullptr; }

    // The rest needs a picture.

    /** The latest one, as it lies in memory. */
    QImage image() const;

    QSize size() const { return latest_->layout().size; }

    /** Whether its pixels are as a frame's have to be. */
    bool isPlain() const;

    /** The same for a frame, if it is plain. The memory is not used again while this exists. */
    MappedPixels pixels() const;

private:
    struct Listeners;
    using Frame = WaylandObject<zwlr_screencopy_frame_v1>;

    void copy();
    SharedBuffer *freeBuffer();
    void noteDamage(QRect outputPixels);
    void finish();
    void fail();

    const ScreencopySession &session_;
    wl_output *const output_;
    const Source source_;
    const bool showsPointer_;
    const std::chrono::nanoseconds interval_;
    const std::shared_ptr<CommandPipe> commands_;
    FramePacer pacer_;
    std::list<SharedBuffer> buffers_; ///< at most as many as can be in use
    Frame frame_; ///< on its way
    BufferLayout layout_; ///< of that
    bool isInverted_ = false; ///< its rows go upwards
    QRegion damage_; ///< in that, pixels of the picture
    SharedBuffer *target_ = nullptr; ///< of that
    std::shared_ptr<const void> targetMemory_; ///< keeps it from being free
    SharedBuffer *latest_ = nullptr;
    std::shared_ptr<const void> latestMemory_;
    bool isLatestInverted_ = false;
    QRegion changes_;
    std::optional<FramePacer::TimePoint> failingSince_;
    bool isForced_ = false;
    bool isStarved_ = false; ///< all buffers are in use
};

} // namespace glimmerpane::wlroots
