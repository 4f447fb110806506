// SPDX-License-Identifier: MIT
#include "platform/x11/DisplayLayerX11.h"

#include <xcb/xcb_renderutil.h>
#include <xcb/xcbext.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace glimmerpane::x11
{

namespace
{

// As many as the capture thread remembers looks of the pointer.
constexpr std::size_t mostPointers = 128;

constexpr std::string_view scalingFilter = "bilinear";

/** RENDER's transforms lead from the destination back to the source, in 16.16 fixed point. */
xcb_render_transform_t transform(double scaleX, double scaleY, QPoint offset)
{
    const auto fixed = [](double value) { return static_cast<xcb_render_fixed_t>(value * 65536); };
    return {fixed(scaleX), 0, fixed(offset.x()), 0, fixed(scaleY), fixed(offset.y()), 0, 0,
            fixed(1)};
}

std::int16_t coordinate(int value)
{
    return static_cast<std::int16_t>(value);
}

std::uint16_t extent(int value)
{
    return static_cast<std::uint16_t>(value);
}

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
    const auto formats = findFormats(*connection);
    if (!formats) {
        return std::unexpected(
            Error{.text = QStringLiteral("The X server cannot draw pictures of the screen's kind."),
                  .log = QStringLiteral("no RENDER format for the root's visual")});
    }
    return std::unique_ptr<DisplayLayer>(
        new DisplayLayerX11(std::move(*connection), *formats, window, size));
}

std::optional<DisplayLayerX11::Formats> DisplayLayerX11::findFormats(const Connection &connection)
{
    const auto *all = xcb_render_util_query_formats(connection.get());
    const auto *screen = xcb_render_util_find_visual_format(all, connection.screen().root_visual);
    const auto *argb = xcb_render_util_find_standard_format(all, XCB_PICT_STANDARD_ARGB_32);
    std::optional<Formats> formats;
    if (screen != nullptr && argb != nullptr) {
        formats = {.screen = screen->format, .argb = argb->id};
    }
    // The library keeps the reply for each connection until it is told to forget it.
    xcb_render_util_disconnect(connection.get());
    return formats;
}

DisplayLayerX11::DisplayLayerX11(Connection connection, Formats formats, std::uint32_t window,
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
    composite(XCB_RENDER_PICT_OP_OVER, pointerPicture(pointer),
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
        xcb_render_set_picture_filter(connection, id, scalingFilter.size(), scalingFilter.data(), 0,
                                      nullptr);
    }
    prepareCanvas(fitted.size());
    xcb_render_set_picture_transform(connection, screen_.get(),
                                     transform(scaleX, scaleY, sample.source.topLeft()));
    composite(XCB_RENDER_PICT_OP_SRC, screen_, {QPoint(), fitted.size()}, canvas_.picture, {});
    if (sample.pointer) {
        const Picture &pointer = pointerPicture(*sample.pointer);
        const QPoint offset = sample.source.topLeft() - sample.pointer->topLeft;
        xcb_render_set_picture_transform(connection, pointer.get(),
                                         transform(scaleX, scaleY, offset));
        composite(XCB_RENDER_PICT_OP_OVER, pointer, {QPoint(), fitted.size()}, canvas_.picture, {});
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

void DisplayLayerX11::composite(std::uint8_t operation, const Picture &from, QRect fromRect,
                                const Picture &to, QPoint toPoint)
{
    xcb_render_composite(connection_.get(), operation, from.get(), XCB_RENDER_PICTURE_NONE,
                         to.get(), coordinate(fromRect.x()), coordinate(fromRect.y()), 0, 0,
                         coordinate(toPoint.x()), coordinate(toPoint.y()), extent(fromRect.width()),
                         extent(fromRect.height()));
}

void DisplayLayerX11::prepareCanvas(QSize size)
{
    if (size.width() > canvas_.size.width() || size.height() > canvas_.size.height()) {
        canvas_.size = canvas_.size.expandedTo(size);
        const auto pixmap = connection_.newId();
        xcb_create_pixmap(connection_.get(), connection_.screen().root_depth, pixmap,
                          connection_.root(), extent(canvas_.size.width()),
                          extent(canvas_.size.height()));
        const auto picture = connection_.newId();
        xcb_render_create_picture(connection_.get(), picture, pixmap, formats_.screen, 0, nullptr);
        canvas_.picture = Picture(connection_, picture);
        canvas_.pixmap = Pixmap(connection_, pixmap);
    }
}

const Picture &DisplayLayerX11::pointerPicture(const PointerSprite &pointer)
{
    const auto known = std::ranges::find(pointers_, pointer.serial, &PointerPicture::serial);
    if (known != pointers_.end()) {
        return known->picture;
    }
    if (pointers_.size() == mostPointers) {
        pointers_.pop_front();
    }
    pointers_.push_back({.serial = pointer.serial, .picture = uploadPointer(pointer.image)});
    return pointers_.back().picture;
}

Picture DisplayLayerX11::uploadPointer(const QImage &image)
{
    constexpr std::uint8_t depth = 32;
    auto *const connection = connection_.get();
    const Pixmap pixmap(connection_, connection_.newId());
    xcb_create_pixmap(connection, depth, pixmap.get(), connection_.root(), extent(image.width()),
                      extent(image.height()));
    const GraphicsContext graphics(connection_, connection_.newId());
    xcb_create_gc(connection, graphics.get(), pixmap.get(), 0, nullptr);
    xcb_put_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap.get(), graphics.get(),
                  extent(image.width()), extent(image.height()), 0, 0, 0, depth,
                  static_cast<std::uint32_t>(image.sizeInBytes()), image.constBits());
    const auto id = connection_.newId();
    xcb_render_create_picture(connection, id, pixmap.get(), formats_.argb, 0, nullptr);
    return {connection_, id};
}

} // namespace glimmerpane::x11
