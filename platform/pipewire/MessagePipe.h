// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FileDescriptor.h"

#include <QRect>

#include <array>
#include <cstdint>
#include <fcntl.h>
#include <memory>
#include <unistd.h>

namespace glimmerpane::pipewire
{

/** What other threads tell the thread of a stream. */
struct Message {
    enum class Kind : std::uint32_t {
        GiveBack, ///< nobody reads this buffer any more
        Show, ///< this rectangle (pixels of the picture) belongs into the next frame
        UseMemory, ///< rather than buffers of the graphics driver
        Move, ///< this rectangle (desktop pixels) is captured from now on
        Stop,
    };

    Kind kind = Kind::Stop;
    std::uint32_t buffer = 0;
    QRect rectangle = {};
};

/**
 * Carries messages to the thread of a stream. Whoever may still write shares the pipe with the
 * thread, so that both ends stay open.
 */
class MessagePipe
{
public:
    /** Null if the process has no file descriptors left. */
    static std::shared_ptr<const MessagePipe> create()
    {
        std::array<int, 2> ends{};
        if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
            return nullptr;
        }
        return std::make_shared<const MessagePipe>(ends[0], ends[1]);
    }

    MessagePipe(int reader, int writer)
        : reader_(reader)
        , writer_(writer)
    {
    }

    /** Any thread. */
    void send(const Message &message) const
    {
        // A pipe takes such a small write completely or not at all. It can only fail if the pipe
        // is full of thousands of unread messages.
        [[maybe_unused]] const auto written = write(writer_.get(), &message, sizeof message);
    }

    /** False if there is none. */
    bool receive(Message &message) const
    {
        return read(reader_.get(), &message, sizeof message) == sizeof message;
    }

    int reader() const { return reader_.get(); }

private:
    FileDescriptor reader_;
    FileDescriptor writer_;
};

} // namespace glimmerpane::pipewire
