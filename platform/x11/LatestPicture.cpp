// SPDX-License-Identifier: MIT
#include "platform/x11/LatestPicture.h"

#include "platform/Log.h"
#include "platform/x11/Coordinates.h"
#include "platform/x11/Render.h"

#include <utility>
#include <variant>

namespace glimmerpane::x11
{

LatestPicture::LatestPicture(const Connection &connection, xcb_gcontext_t context, Lending lending,
                             std::function<bool()> isStillRead)
    : connection_(connection)
    , context_(context)
    , isStillRead_(std::move(isStillRead))
    , hasSharedPixmaps_(lending == Lending::AsPixmaps)
    , lending_(lending)
{
}

bool LatestPicture::adopt(const SampleBuffer &sample, bool isScaled)
{
    if (const auto *const inServer = std::get_if<ServerDrawable>(&sample.picture)) {
        drawable_ = inServer->id;
    } else if (const auto *const pixels = std::get_if<MappedPixels>(&sample.picture)) {
        if (!lend(*pixels, isScaled) && !upload(*pixels, sample.changed)) {
            return false;
        }
    } else if (const auto *const buffer = std::get_if<DmaPicture>(&sample.picture)) {
        if (!import(*buffer)) {
            buffer->refuse();
            return false;
        }
    } else if (isScaled && lent_ && drawable_ == XCB_NONE) {
        upload(MappedPixels(lentPixels_), {});
    }
    return drawable_ != XCB_NONE || lent_;
}

/** False if the pixels must be copied. */
bool LatestPicture::lend(const MappedPixels &pixels, bool isScaled)
{
    const auto picture = lending_.lend(connection_, pixels);
    if (!picture || (isScaled && picture->pixmap == XCB_NONE)) {
        return false;
    }
    takeBack();
    upload_.reset();
    lent_ = picture;
    lentPixels_ = pixels;
    owner_ = pixels.owner;
    drawable_ = picture->pixmap;
    return true;
}

bool LatestPicture::import(const DmaPicture &picture)
{
    const auto pixmap = imported_.import(connection_, picture.buffer);
    if (pixmap == XCB_NONE) {
        return false;
    }
    takeBack();
    upload_.reset();
    owner_ = picture.owner;
    drawable_ = pixmap;
    return true;
}

/** Gives the picture's buffer back as soon as the server no longer reads it. */
void LatestPicture::takeBack()
{
    lent_.reset();
    lentPixels_ = {};
    if (auto owner = std::exchange(owner_, nullptr); owner && isStillRead_()) {
        returning_.push_back(std::move(owner));
    }
}

bool LatestPicture::upload(const MappedPixels &pixels, const QRegion &changed)
{
    QRegion stale = changed;
    if (!upload_ || upload_->size() != pixels.size) {
        auto made = PictureUpload::create(connection_, pixels.size, context_, hasSharedPixmaps_);
        if (!made) {
            qCWarning(platformLog, "cannot show pictures: %s", qPrintable(made.error().log));
            return false;
        }
        upload_ = std::move(*made);
        stale = QRect(QPoint(), pixels.size);
    }
    upload_->update(connection_, pixels, stale);
    takeBack();
    drawable_ = upload_->pixmap();
    return true;
}

void LatestPicture::copyTo(QRect part, xcb_drawable_t target, QPoint at) const
{
    if (drawable_ == XCB_NONE && lent_) {
        for (const QRect &beyond : QRegion(part) - QRect(QPoint(), lent_->size)) {
            const xcb_rectangle_t black = rectangleOf(beyond.translated(at - part.topLeft()));
            xcb_poly_fill_rectangle(connection_.get(), target, context_, 1, &black);
        }
        put(connection_, *lent_, part, target, context_, at);
    } else {
        copyArea(connection_, context_, drawable_, part, target, at);
    }
}

} // namespace glimmerpane::x11
