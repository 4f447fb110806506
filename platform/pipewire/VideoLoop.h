// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Frame.h"
#include "platform/pipewire/Handles.h"
#include "platform/pipewire/MessagePipe.h"
#include "platform/pipewire/Parameters.h"
#include "platform/pipewire/VideoBuffers.h"
#include "platform/pipewire/VideoStream.h"

#include <optional>
#include <pipewire/pipewire.h>
#include <utility>
#include <vector>

namespace glimmerpane::pipewire
{

/**
 * The work of a stream's thread: receives the buffers of one node and passes each on as a frame. A
 * frame lends its buffer; the latest one is kept, so that it can be shown again at any time. All of
 * PipeWire's objects are made, used and destroyed on this thread.
 */
class VideoLoop
{
public:
    using Handlers = CaptureStream::Handlers;

    VideoLoop(VideoNode node, std::shared_ptr<const MessagePipe> messages, Handlers handlers);
    VideoLoop(const VideoLoop &) = delete;
    VideoLoop &operator=(const VideoLoop &) = delete;
    VideoLoop(VideoLoop &&) = delete;
    VideoLoop &operator=(VideoLoop &&) = delete;
    ~VideoLoop();

    /** Returns when told to stop, or once the stream has ended by itself and the handler was
     * called. */
    void run();

private:
    friend struct Events;

    enum class Occasion {
        News,
        Again, ///< the previous frame was not shown
    };

    std::expected<void, Error> connect();
    std::expected<void, Error> connectStream();
    std::vector<const spa_pod *> acceptedFormats(ParameterMemory &memory) const;
    void useMemory();
    void end(Error error);
    void readMessages();
    void showAgainSoon();

    void takeFormat(const spa_pod *format);
    void addBuffer(pw_buffer *buffer);
    void takeBuffers();
    void takeBuffer(pw_buffer *buffer);
    bool takePicture(const pw_buffer &buffer);
    QRect sourceOf(const BufferPicture &picture) const;
    QRegion changesOf(const BufferPicture &picture, const QRegion &damage) const;
    void takePointer(const spa_buffer &buffer);
    std::optional<PointerSprite> pointerOver(const BufferPicture &picture) const;
    void deliver(Occasion occasion);

    const Library library_;
    VideoNode node_;
    const std::shared_ptr<const MessagePipe> messages_;
    const Handlers handlers_;
    VideoBuffers buffers_;
    QSize size_; ///< of a buffer, pixels; empty before a format is agreed on
    std::optional<std::uint64_t> modifier_; ///< of the graphics driver's buffers; null for memory
    std::optional<BufferPicture> latest_;
    QRect source_; ///< the captured area, pixels of the latest picture
    QRegion due_; ///< to include in the next frame, pixels of the picture
    std::optional<QPoint>
        pointerAt_; ///< its hotspot, pixels of the buffer; null if it is not shown
    QPoint hotspot_; ///< in the sprite's image
    PointerSprite sprite_; ///< the latest image
    /** The latest frame's: serial and place of its image. */
    std::optional<std::pair<std::uint32_t, QPoint>> shownPointer_;
    bool isShownAgainSoon_ = false;
    bool isRunning_ = true;

    // Destroyed in reverse order.
    Handle<pw_main_loop, pw_main_loop_destroy> loop_;
    Handle<pw_context, pw_context_destroy> context_;
    Handle<pw_core, pw_core_disconnect> core_;
    spa_hook coreListener_{};
    spa_hook streamListener_{};
    Handle<pw_stream, pw_stream_destroy> stream_;
    spa_source *again_ = nullptr; ///< a timer, the loop's
    spa_source *patience_ = nullptr; ///< the same
};

} // namespace glimmerpane::pipewire
