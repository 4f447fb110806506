// SPDX-License-Identifier: MIT
#pragma once

#include "platform/CaptureStream.h"
#include "platform/FileDescriptor.h"

#include <QThread>
#include <QThreadPool>

#include <functional>
#include <memory>
#include <vector>

namespace glimmerpane::pipewire
{

class MessagePipe;

/** Where a stream's pictures come from. */
struct VideoNode {
    std::uint32_t id = 0; ///< PipeWire's
    FileDescriptor remote; ///< a connection to PipeWire; without one, the user's own is used
    QRect area; ///< captured, desktop pixels
    /** Where an area is in a picture of this size, in pixels; it may reach beyond. */
    std::function<QRect(QSize picture, QRect area)> partOf;
    std::chrono::nanoseconds minimumFrameInterval{};
    bool tellsChanges = true; ///< of every picture; otherwise all of it may have changed
    /** Of the graphics driver's buffers that can be shown; none for memory only. drm_fourcc.h */
    std::vector<std::uint64_t> modifiers{};
};

/**
 * The pictures of one PipeWire node, received on a thread of their own, "captureQueue". Main
 * thread, except for the handlers. A sender that sends nothing has nothing new, so only the first
 * frame is waited for.
 */
class VideoStream final : public CaptureStream
{
public:
    /** `background` waits for the thread when the stream has been stopped. */
    VideoStream(VideoNode node, std::shared_ptr<QThreadPool> background);
    ~VideoStream() override;

    QCoro::Task<std::expected<void, Error>> startCapture(Handlers handlers) override;
    void stopCapture() override;
    void returnSampleBuffer(const SampleBuffer &sample) override;
    void invalidate() override;
    /** Captures another area, desktop pixels, of the same pictures. */
    void moveTo(QRect area);

private:
    VideoNode node_; ///< until the start
    const std::shared_ptr<QThreadPool> background_;
    std::shared_ptr<const MessagePipe> messages_;
    std::unique_ptr<QThread> thread_;
};

} // namespace glimmerpane::pipewire
