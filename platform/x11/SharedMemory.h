// SPDX-License-Identifier: MIT
#pragma once

#include "platform/x11/Connection.h"
#include "platform/x11/ServerId.h"

#include <xcb/shm.h>

#include <cstddef>
#include <expected>
#include <memory>

namespace glimmerpane::x11
{

using SharedSegment = ServerId<xcb_shm_detach>;

struct UnmapMemory {
    std::size_t bytes = 0;
    void operator()(std::byte *memory) const;
};

/** Memory that this program and the X server both map; nobody else can. Move-only. */
class SharedMemory
{
public:
    /** Waits for the server; fails if it shares no memory, as over a network. */
    static std::expected<SharedMemory, Error> create(const Connection &connection,
                                                     std::size_t bytes);

    std::byte *data() const { return mapping_.get(); }
    xcb_shm_seg_t segment() const { return segment_.get(); }

private:
    std::unique_ptr<std::byte, UnmapMemory> mapping_;
    SharedSegment segment_;
};

} // namespace glimmerpane::x11
