// SPDX-License-Identifier: MIT
#include "platform/x11/DisplayLayerX11.h"

#include <xcb/xcbext.h>

#include <algorithm>
#include <array>
#include <utility>

namespace glimmerpane::x11
{

namespace
{

// As many as the capture thread remembers looks of the pointer.
constexpr std::size_t mostPointers = 128;

} // namespace

std::expected<std::unique_ptr<DisplayLayer>, Error> DisplayLayerX11::create(std::uint32_t window,
                                                                            QSize size)
{
    auto connection = Connection::open();
    if (!connection) {
        return std::unexpected(connection.error());
    }
    if (const auto extensions = requireExtensions(*connection); !extensions) {
        return std::unexpected(extensions.error());
    }
    const auto formats = renderFormats(*connection);
    if (!formats) {
        return std::unexpected(formats.error());
    }
    return std::unique_ptr<DisplayLayer>(
        new DisplayLayerX11(std::move(*connection), *formats, window, size));
}

DisplayLayerX11::DisplayLayerX11(Connection connection, RenderFormats formats, std::uint32_t window,
                                 QSize size)
    : connection_(std::move(connection))
    , formats_(formats)
    , window_(window)
    , bounds_(QPoint(), size)
{
    const auto &screen = connection_.screen();
    const auto id = connection_.newId();
    const std::array<std::uint32_t, 3> values{screen.black_pixel,
                                              XCB_SUBWINDOW_MODE_INCLUDE_INFERIORS, 0};
    xcb_create_gc(connection_.get(), id, screen.root,
                  XCB_GC_FOREGROUND | XCB_GC_SUBWINDOW_MODE | XCB_GC_GRAPHICS_EXPOSURES,
                  values.data());
    graphics_ = GraphicsContext(connection_, id);
}

bool DisplayLayerX11::isReadyForMoreMediaData()
{
    if (fence_) {
        void *reply = nullptr;
        xcb_generic_error_t *error = nullptr;
        if (xcb_poll_for_reply(connection_.get(), fence_->sequence, &reply, &error) == 0) {
            return false;
        }
        std::free(reply);
        std::free(error);
        fence_.reset();
    }
    // The errors of a window that is gone are nobody's concern here.
    while (const Reply<xcb_generic_event_t> event{xcb_poll_for_queued_event(connection_.get())}) { }
    return !connection_.isBroken();
}

void DisplayLayerX11::enqueueSampleBuffer(const SampleBuffer &sample)
{
    if (sample.source.size() == bounds_.size()) {
        show(sample);
    } else {
        showScaled(sample);
    }
    // The cheapest request that has an answer: the server gives it when the frame is done.
    fence_ = xcb_get_input_focus(connection_.get());
    connection_.flush();
}

void DisplayLayerX11::show(const SampleBuffer &sample)
{
    QRegion changed = sample.changed & sample.source;
    const auto before = std::exchange(shownPointer_, std::nullopt);
    if (sample.pointer) {
        const QRect image(sample.pointer->topLeft, sample.pointer->image.size());
        shownPointer_ = {.serial = sample.pointer->serial,
                         .topLeft = sample.pointer->topLeft,
                         .covered = image & sample.source};
    }
    if (before && before != shownPointer_) {
        changed |= before->covered;
    }
    if (sample.pointer && shownPointer_) {
        const QRect patch = shownPointer_->covered;
        if (before != shownPointer_ || changed.intersects(patch)) {
            // The pointer comes first: a client that reads before the rest follows may see it at
            // two places, but never misses it.
            showPatch(sample, *sample.pointer, patch);
            changed -= patch;
        }
    }
    for (const QRect &rectangle : changed) {
        copy(sample.drawable, rectangle.topLeft(), window_,
             rectangle.topLeft() - sample.source.topLeft(), rectangle.size());
    }
}

void DisplayLayerX11::showPatch(const SampleBuffer &sample, const PointerSprite &pointer,
                                QRect patch)
{
    prepareCanvas(patch.size());
    // A copy from beyond the screen leaves a pixmap as it was.
    const xcb_rectangle_t whole{0, 0, extent(patch.width()), extent(patch.height())};
    xcb_poly_fill_rectangle(connection_.get(), canvas_.pixmap.get(), graphics_.get(), 1, &whole);
    copy(sample.drawable, patch.topLeft(), canvas_.pixmap.get(), {}, patch.size());
    composite(connection_, XCB_RENDER_PICT_OP_OVER, pointerPicture(pointer),
              {patch.topLeft() - pointer.topLeft, patch.size()}, canvas_.picture, {});
    copy(canvas_.pixmap.get(), {}, window_, patch.topLeft() - sample.source.topLeft(),
         patch.size());
}

void DisplayLayerX11::showScaled(const SampleBuffer &sample)
{
    auto *const connection = connection_.get();
    const QRect fitted = aspectFit(sample.source.size(), bounds_);
    const double scaleX = double(sample.source.width()) / fitted.width();
    const double scaleY = double(sample.source.height()) / fitted.height();
    if (screen_.get() == 0) {
        const auto id = connection_.newId();
        const std::uint32_t inferiors = XCB_SUBWINDOW_MODE_INCLUDE_INFERIORS;
        xcb_render_create_picture(connection, id, sample.drawable, formats_.screen,
                                  XCB_RENDER_CP_SUBWINDOW_MODE, &inferiors);
        screen_ = Picture(connection_, id);
        setBilinear(connection_, screen_);
    }
    prepareCanvas(fitted.size());
    xcb_render_set_picture_transform(connection, screen_.get(),
                                     transform(scaleX, scaleY, sample.source.topLeft()));
    composite(connection_, XCB_RENDER_PICT_OP_SRC, screen_, {QPoint(), fitted.size()},
              canvas_.picture, {});
    if (sample.pointer) {
        const Picture &pointer = pointerPicture(*sample.pointer);
        const QPoint offset = sample.source.topLeft() - sample.pointer->topLeft;
        xcb_render_set_picture_transform(connection, pointer.get(),
                                         transform(scaleX, scaleY, offset));
        composite(connection_, XCB_RENDER_PICT_OP_OVER, pointer, {QPoint(), fitted.size()},
                  canvas_.picture, {});
    }
    copy(canvas_.pixmap.get(), {}, window_, fitted.topLeft(), fitted.size());
}

void DisplayLayerX11::copy(std::uint32_t from, QPoint fromPoint, std::uint32_t to, QPoint toPoint,
                           QSize size)
{
    xcb_copy_area(connection_.get(), from, to, graphics_.get(), coordinate(fromPoint.x()),
                  coordinate(fromPoint.y()), coordinate(toPoint.x()), coordinate(toPoint.y()),
                  extent(size.width()), extent(size.height()));
}

void DisplayLayerX11::prepareCanvas(QSize size)
{
    if (size.width() > canvas_.size.width() || size.height() > canvas_.size.height()) {
        canvas_ = makeCanvas(connection_, canvas_.size.expandedTo(size),
                             connection_.screen().root_depth, formats_.screen);
    }
}

const Picture &DisplayLayerX11::pointerPicture(const PointerSprite &pointer)
{
    const auto known = std::ranges::find(pointers_, pointer.serial, &PointerPicture::serial);
    if (known != pointers_.end()) {
        return known->image.picture;
    }
    if (pointers_.size() == mostPointers) {
        pointers_.pop_front();
    }
    pointers_.push_back(
        {.serial = pointer.serial, .image = uploadImage(connection_, formats_, pointer.image)});
    return pointers_.back().image.picture;
}

} // namespace glimmerpane::x11
