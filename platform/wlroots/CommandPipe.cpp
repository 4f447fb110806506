// SPDX-License-Identifier: MIT
#include "platform/wlroots/CommandPipe.h"

#include <array>
#include <fcntl.h>
#include <type_traits>
#include <unistd.h>
#include <utility>

namespace glimmerpane::wlroots
{

std::shared_ptr<CommandPipe> CommandPipe::create()
{
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        return nullptr;
    }
    return std::make_shared<CommandPipe>(FileDescriptor(ends[0]), FileDescriptor(ends[1]));
}

CommandPipe::CommandPipe(FileDescriptor reader, FileDescriptor writer)
    : reader_(std::move(reader))
    , writer_(std::move(writer))
{
}

void CommandPipe::send(const Command &command) const
{
    // A pipe takes such a small write completely or not at all.
    static_assert(std::is_trivially_copyable_v<Command>);
    [[maybe_unused]] const auto written = write(writer_.get(), &command, sizeof command);
}

std::optional<Command> CommandPipe::receive() const
{
    Command command;
    const bool isRead = read(reader_.get(), &command, sizeof command) == sizeof command;
    return isRead ? std::optional(command) : std::nullopt;
}

} // namespace glimmerpane::wlroots
