// SPDX-License-Identifier: MIT
#pragma once

#include "rig/XClient.h"

#include <xcb/shm.h>

namespace glimmerpane::testing
{

/**
 * A picture in memory that the X server reads directly. Freed with the object; the server releases
 * it when the connection closes at the latest.
 */
class SharedPicture
{
public:
    static Result<SharedPicture> create(const XClient &client, QSize size);
    SharedPicture(SharedPicture &&other) noexcept;
    SharedPicture &operator=(SharedPicture &&) = delete;
    SharedPicture(const SharedPicture &) = delete;
    SharedPicture &operator=(const SharedPicture &) = delete;
    ~SharedPicture();

    QSize size() const { return image_.size(); }
    /** 32 bits per pixel. Do not write while the server reads. */
    QImage &image() { return image_; }

    /** Draws a part of it into the window; the server's completion event comes when it has read. */
    void put(const XClient &client, xcb_drawable_t target, xcb_gcontext_t context,
             const QRect &part, QPoint at) const;

private:
    SharedPicture(void *memory, size_t bytes, xcb_shm_seg_t segment, QSize size);

    void *memory_;
    size_t bytes_;
    xcb_shm_seg_t segment_;
    QImage image_;
};

} // namespace glimmerpane::testing
