// SPDX-License-Identifier: MIT
#pragma once

#include "platform/CaptureStream.h"
#include "platform/FramePacer.h"
#include "platform/wlroots/PictureComposer.h"
#include "platform/wlroots/ScreencopySession.h"

namespace glimmerpane::wlroots
{

/** The area that a loop captures. */
struct CaptureSource {
    Rect area; ///< points, desktop coordinates
    MainDisplay display; ///< when the capture was asked for
    bool showsPointer = false;
    std::chrono::nanoseconds minimumFrameInterval{};
};

/**
 * The work of the capture thread: has the compositor copy each new picture of the area, pointer
 * included, into memory, and passes it on. When outputs change, it continues with the same points,
 * relative to the output that was the main one; it ends by itself only after none of them has been
 * on an output, or the compositor has delivered nothing but failures, for a moment.
 */
class ScreencopyLoop
{
public:
    /** Waits for the compositor. */
    static std::expected<std::unique_ptr<ScreencopyLoop>, Error> create(
        const CaptureSource &source, std::shared_ptr<CommandPipe> commands,
        CaptureStream::Handlers handlers);

    /** Returns on a command, or once the stream has ended by itself and the handler was called. */
    void run();

private:
    using TimePoint = FramePacer::TimePoint;
    using Parts = std::vector<std::unique_ptr<OutputCapture>>;

    ScreencopyLoop(ScreencopySession session, const CaptureSource &source,
                   std::shared_ptr<CommandPipe> commands, CaptureStream::Handlers handlers);
    void followOutputs();
    const Output *mainOutput() const;
    QRect findArea() const;
    std::vector<OutputCapture::Source> findParts() const;
    void readCommands();
    void obey(const Command &command);
    void moveArea(TimePoint now);
    bool isPictureComplete() const;
    void endIfHopeless(TimePoint now);
    void end(Error error);
    void collectChanges();
    void showChanges(TimePoint now);
    bool isDirect() const;
    std::optional<TimePoint> showingDue() const;
    std::optional<TimePoint> nextDue() const;

    const ScreencopySession session_;
    CaptureSource source_;
    std::optional<Rect> wanted_; ///< the area to go on with, points
    std::optional<TimePoint> movedAt_; ///< until the area's first frame
    const std::shared_ptr<CommandPipe> commands_;
    const CaptureStream::Handlers handlers_;
    QString mainName_; ///< of the output that the area's points count from
    QRect area_; ///< its current position, in the unit of window positions
    Parts parts_; ///< one for each output under it
    PictureComposer composer_;
    FramePacer pacer_;
    QRegion changed_; ///< pixels that nobody has seen, pixels of the picture
    QRegion repeated_; ///< to be shown again, pixels of the picture
    std::optional<TimePoint> giveUpAt_; ///< while the area is on no output
    bool isRunning_ = true;
};

} // namespace glimmerpane::wlroots
