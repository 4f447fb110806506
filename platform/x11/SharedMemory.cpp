// SPDX-License-Identifier: MIT
#include "platform/x11/SharedMemory.h"

#include "platform/x11/FileDescriptor.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace glimmerpane::x11
{

namespace
{

std::unexpected<Error> noMemory(const char *call)
{
    return std::unexpected(
        Error{.text = Error::tr("There is no memory to share with the X server."),
              .log = QStringLiteral("%1: %2").arg(QLatin1String(call), qt_error_string(errno))});
}

} // namespace

void UnmapMemory::operator()(std::byte *memory) const
{
    munmap(memory, bytes);
}

std::expected<SharedMemory, Error> SharedMemory::create(const Connection &connection,
                                                        std::size_t bytes)
{
    const auto *extension = xcb_get_extension_data(connection.get(), &xcb_shm_id);
    if (extension == nullptr || extension->present == 0) {
        return std::unexpected(Error{
            .text
            = Error::tr("The X server lacks the extension %1.").arg(QStringLiteral("MIT-SHM")),
            .log = {},
            .outcome = Outcome::unavailable});
    }
    FileDescriptor file(memfd_create("glimmerpane", MFD_CLOEXEC));
    if (file.get() < 0 || ftruncate(file.get(), static_cast<off_t>(bytes)) != 0) {
        return noMemory("memfd_create");
    }
    void *const mapped = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_SHARED, file.get(), 0);
    if (mapped == MAP_FAILED) {
        return noMemory("mmap");
    }
    SharedMemory memory;
    memory.mapping_ = {static_cast<std::byte *>(mapped), UnmapMemory{bytes}};
    const auto id = connection.newId();
    // xcb closes the descriptor that it sends. The server only reads, but makes a pixmap only of
    // memory that it may write.
    const auto attached = xcb_shm_attach_fd_checked(connection.get(), id, file.release(), 0);
    if (auto result = connection.check(attached, "ShmAttachFd"); !result) {
        return std::unexpected(result.error());
    }
    memory.segment_ = SharedSegment(connection, id);
    return memory;
}

} // namespace glimmerpane::x11
