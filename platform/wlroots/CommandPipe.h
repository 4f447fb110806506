// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FileDescriptor.h"
#include "platform/Geometry.h"

#include <QRect>

#include <memory>
#include <optional>

namespace glimmerpane::wlroots
{

/** What the other threads tell the capture thread. */
struct Command {
    enum class Kind {
        Stop,
        Show, ///< the rectangle again, in a frame without new pixels
        Resend, ///< the rectangle's pixels again
        BufferFree, ///< a frame's memory is no longer used
        Move, ///< the area is captured from now on
    };
    Kind kind = Kind::Stop;
    QRect rectangle; ///< pixels of the picture
    Rect area = {}; ///< points, desktop coordinates
};

/** Commands on their way to one thread. Any thread may send; shared, to outlive them all. */
class CommandPipe
{
public:
    /** Null if the system has no file descriptors left. */
    static std::shared_ptr<CommandPipe> create();

    CommandPipe(FileDescriptor reader, FileDescriptor writer);

    /** Never blocks. Only lost if thousands are unread. */
    void send(const Command &command) const;

    /** The oldest unread one. */
    std::optional<Command> receive() const;

    /** Readable while there is something to receive. */
    int fileDescriptor() const { return reader_.get(); }

private:
    const FileDescriptor reader_;
    const FileDescriptor writer_;
};

} // namespace glimmerpane::wlroots
