// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Frame.h"
#include "platform/x11/ImportedBuffers.h"
#include "platform/x11/LentPictures.h"
#include "platform/x11/PictureUpload.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace glimmerpane::x11
{

/**
 * The picture of the latest frame, wherever it is: in the server, in a buffer of the graphics
 * driver or in memory that the server reads in place, or in a copy of that. Main thread.
 */
class LatestPicture
{
public:
    /**
     * The connection must outlive this object, and so must `context`, which draws into drawables of
     * the screen's depth. `isStillRead` tells whether the server may still be reading pictures
     * before the latest; the one before a new frame is done, or there would be no new frame.
     */
    LatestPicture(const Connection &connection, xcb_gcontext_t context, Lending lending,
                  std::function<bool()> isStillRead);

    /** False if the frame's picture cannot be shown. Only a drawable can be scaled. */
    bool adopt(const SampleBuffer &sample, bool isScaled);

    /** Gives back the memory of earlier pictures. Call when the server has read them. */
    void giveBack() { returning_.clear(); }

    /** The picture's, if it is one. */
    xcb_drawable_t drawable() const { return drawable_; }

    /** Copies a part of the picture, with black where it reaches beyond. */
    void copyTo(QRect part, xcb_drawable_t target, QPoint at) const;

    /** See LentPictures for these. */
    void refused() { lending_.refused(); }
    void forgetWithdrawn()
    {
        lending_.forgetWithdrawn();
        imported_.forgetWithdrawn();
    }

private:
    bool import(const DmaPicture &picture);
    bool lend(const MappedPixels &pixels, bool isScaled);
    bool upload(const MappedPixels &pixels, const QRegion &changed);
    void takeBack();

    const Connection &connection_;
    const xcb_gcontext_t context_;
    const std::function<bool()> isStillRead_;
    const bool hasSharedPixmaps_;
    LentPictures lending_;
    ImportedBuffers imported_;
    std::shared_ptr<const void> owner_; ///< of what the server reads in place
    std::optional<LentPicture> lent_; ///< while the server reads it in place
    MappedPixels lentPixels_; ///< its memory
    std::vector<std::shared_ptr<const void>> returning_; ///< of what the server may still read
    std::optional<PictureUpload> upload_; ///< while pictures in memory are copied
    xcb_drawable_t drawable_ = XCB_NONE;
};

} // namespace glimmerpane::x11
