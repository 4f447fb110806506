// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Frame.h"
#include "platform/x11/ServerId.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace glimmerpane::x11
{

/** See importableModifiers() in X11Backend.h. Waits for the server. */
std::vector<std::uint64_t> importableModifiers(const Connection &connection);

/**
 * Has the server make pixmaps of the graphics driver's buffers, each once (DRI3 1.2). The driver
 * puts the server's reading after the sender's drawing. Main thread.
 */
class ImportedBuffers
{
public:
    /**
     * Of the screen's depth; XCB_NONE if the server refuses the buffer. Valid as long as somebody
     * holds the buffer. Waits for the server the first time.
     */
    xcb_pixmap_t import(const Connection &connection,
                        const std::shared_ptr<const DmaBuffer> &buffer);

    /** Has the server let go of buffers that their sender has withdrawn. */
    void forgetWithdrawn();

private:
    struct Imported {
        std::weak_ptr<const DmaBuffer> buffer;
        Pixmap pixmap;
    };

    std::vector<Imported> imported_;
};

} // namespace glimmerpane::x11
