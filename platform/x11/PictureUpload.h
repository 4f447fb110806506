// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Frame.h"
#include "platform/x11/SharedMemory.h"

#include <QRegion>
#include <QSize>

#include <optional>

namespace glimmerpane::x11
{

/**
 * A pixmap that follows pictures in this program's memory. Each changed pixel is copied once, into
 * memory that the server reads; where it can, that memory is the pixmap itself.
 */
class PictureUpload
{
public:
    /** Waits for the server; `context` draws into windows of the screen's depth. */
    static std::expected<PictureUpload, Error> create(const Connection &connection, QSize size,
                                                      xcb_gcontext_t context,
                                                      bool hasSharedPixmaps);

    QSize size() const { return size_; }
    xcb_pixmap_t pixmap() const { return pixmap_.get(); }

    /** Copies a region of the pixels. The server must have finished the previous one. */
    void update(const Connection &connection, const MappedPixels &pixels, const QRegion &changed);

private:
    QSize size_;
    SharedMemory memory_;
    Pixmap pixmap_;
    xcb_gcontext_t context_ = 0;
    bool isMemoryThePixmap_ = false;
};

} // namespace glimmerpane::x11
