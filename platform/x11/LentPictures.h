// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Frame.h"
#include "platform/x11/SharedMemory.h"

#include <QPoint>
#include <QRect>
#include <QSize>

#include <cstdint>
#include <expected>
#include <memory>
#include <optional>
#include <vector>

namespace glimmerpane::x11
{

/** How the server gets at pictures in the memory of others. */
enum class Lending {
    Never, ///< they are copied
    ByRequest, ///< it reads rectangles as it is told to
    AsPixmaps, ///< the memory is a pixmap, where it has the shape of one; otherwise by request
};

/** The best that the server offers, MIT-SHM 1.2 given. Waits for the server. */
Lending lendingOf(const Connection &connection);

/** A picture that the server reads where it is. */
struct LentPicture {
    xcb_shm_seg_t segment = XCB_NONE;
    std::uint32_t offset = 0; ///< of the top-left pixel in the segment, bytes
    std::uint16_t rowLength = 0; ///< from one row to the next, pixels
    QSize size;
    xcb_pixmap_t pixmap = XCB_NONE; ///< if it is one

    friend bool operator==(const LentPicture &, const LentPicture &) = default;
};

/** Copies a part of the picture, as far as it exists, into a drawable of the screen's depth. */
void put(const Connection &connection, const LentPicture &picture, QRect part,
         xcb_drawable_t target, xcb_gcontext_t context, QPoint at);

/**
 * Makes the server map memory of others, each file once, so that no pixel passes this program. The
 * pixels must not change while the server reads them. Main thread.
 */
class LentPictures
{
public:
    /** `most` is what may be tried. */
    explicit LentPictures(Lending most)
        : most_(most)
    {
    }

    /**
     * Null if the pixels must be copied. Valid as long as somebody holds the pixels' file. Waits
     * for the server only the first time; later it tells by an error of MIT-SHM, which calls for
     * refused().
     */
    std::optional<LentPicture> lend(const Connection &connection, const MappedPixels &pixels);

    /** The server has not accepted memory: nothing is lent any more. */
    void refused() { most_ = Lending::Never; }

    /** Has the server unmap memory whose owner has withdrawn it. */
    void forgetWithdrawn();

private:
    struct Mapped {
        std::weak_ptr<const MemoryFile> file;
        SharedSegment segment;
        Pixmap pixmap;
        LentPicture picture;
    };

    std::expected<Mapped *, Error> mapped(const Connection &connection, const MappedPixels &pixels);
    void describe(const Connection &connection, Mapped &mapped, const MappedPixels &pixels) const;

    Lending most_;
    bool isProven_ = false; ///< the server has accepted memory
    std::vector<Mapped> mapped_;
};

} // namespace glimmerpane::x11
