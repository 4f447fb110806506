// SPDX-License-Identifier: MIT
#include "platform/x11/SpanningOverlayX11.h"

#include "platform/x11/Compositing.h"
#include "platform/x11/Monitors.h"
#include "platform/x11/OverlayStacking.h"
#include "platform/x11/WindowProperties.h"

#include <QPainter>
#include <QPointer>

#include <algorithm>
#include <array>
#include <utility>

namespace glimmerpane::x11
{

namespace
{

using namespace std::chrono_literals;

constexpr std::uint8_t argbDepth = 32;

xcb_rectangle_t toXcb(QRect rectangle)
{
    return {coordinate(rectangle.x()), coordinate(rectangle.y()), extent(rectangle.width()),
            extent(rectangle.height())};
}

} // namespace

std::expected<std::unique_ptr<OverlayWindow>, Error> SpanningOverlayX11::create(
    const QString &title, const FrostedGlass &glass)
{
    auto opened = openExtended();
    if (!opened) {
        return std::unexpected(opened.error());
    }
    const auto formats = renderFormats(opened->connection);
    if (!formats) {
        return std::unexpected(formats.error());
    }
    std::unique_ptr<SpanningOverlayX11> overlay(
        new SpanningOverlayX11(std::move(*opened), *formats, glass));
    if (auto created = overlay->createWindow(title); !created) {
        return std::unexpected(created.error());
    }
    return overlay;
}

SpanningOverlayX11::SpanningOverlayX11(ExtendedConnection opened, const RenderFormats &formats,
                                       const FrostedGlass &glass)
    : connection_(std::move(opened.connection))
    , extensions_(opened.extensions)
    , formats_(formats)
    , glass_(glass)
    , cursors_(connection_)
    , events_(connection_)
{
    events_.onEvent = [this](const xcb_generic_event_t &event) { handle(event); };
    events_.onDrained = [this] { inbox_.deliverMotion(); };
    events_.onBroken = [this] { lose(); };
    raiseTimer_.setSingleShot(true);
    QObject::connect(&raiseTimer_, &QTimer::timeout, &events_, [this] { raise(); });
}

std::expected<void, Error> SpanningOverlayX11::createWindow(const QString &title)
{
    auto *const connection = connection_.get();
    const auto visual = translucentVisual(connection_.screen());
    const auto colormap = connection_.newId();
    xcb_create_colormap(connection, XCB_COLORMAP_ALLOC_NONE, colormap, connection_.root(), visual);
    colormap_ = Colormap(connection_, colormap);
    const std::array<std::uint32_t, 5> values{
        0, 0, 1,
        XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE | XCB_EVENT_MASK_POINTER_MOTION
            | XCB_EVENT_MASK_ENTER_WINDOW | XCB_EVENT_MASK_LEAVE_WINDOW
            | XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_EXPOSURE,
        colormap};
    const auto id = connection_.newId();
    const auto created = xcb_create_window_checked(
        connection, argbDepth, id, connection_.root(), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
        visual,
        XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK
            | XCB_CW_COLORMAP,
        values.data());
    if (auto result = connection_.check(created, "CreateWindow"); !result) {
        return result;
    }
    window_ = Window(connection_, id);
    const auto graphics = connection_.newId();
    const std::array<std::uint32_t, 2> nothing{0, 0};
    xcb_create_gc(connection, graphics, id, XCB_GC_FOREGROUND | XCB_GC_GRAPHICS_EXPOSURES,
                  nothing.data());
    transparent_ = GraphicsContext(connection_, graphics);
    describeWindow(connection_, id, title, "_NET_WM_WINDOW_TYPE_UTILITY");
    watchMonitors(connection_, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
    return {};
}

void SpanningOverlayX11::present(QRect frame, const OverlayPicture &picture,
                                 const OverlayLabel &label)
{
    const bool isNew = frame_.isEmpty();
    frame_ = frame;
    picture_ = picture;
    label_ = label;
    if (isNew) {
        span();
    }
    paint();
    if (isNew) {
        lookForAlert();
    }
    events_.flush();
}

/** Where people can drag the overlay to: the main display. */
void SpanningOverlayX11::span()
{
    const auto displays = monitors(connection_);
    place_ = displays.empty() ? frame_ : displays.front().pixels.united(frame_);
    const std::array<std::uint32_t, 5> geometry{
        static_cast<std::uint32_t>(place_.x()), static_cast<std::uint32_t>(place_.y()),
        static_cast<std::uint32_t>(place_.width()), static_cast<std::uint32_t>(place_.height()),
        XCB_STACK_MODE_ABOVE};
    xcb_configure_window(connection_.get(), window_.get(),
                         XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH
                             | XCB_CONFIG_WINDOW_HEIGHT | XCB_CONFIG_WINDOW_STACK_MODE,
                         geometry.data());
    hasAlert_ = false;
    xcb_map_window(connection_.get(), window_.get());
}

/** The whole overlay with its label, and nothing where they were before. */
void SpanningOverlayX11::paint()
{
    auto *const connection = connection_.get();
    const QRegion shown
        = QRegion(frame_ & place_) + (QRect(label_.topLeft, label_.picture.size()) & place_);
    std::vector<xcb_rectangle_t> left;
    for (const QRect &part : painted_ - shown) {
        left.push_back(toXcb(part.translated(-place_.topLeft())));
    }
    xcb_poly_fill_rectangle(connection, window_.get(), transparent_.get(),
                            static_cast<std::uint32_t>(left.size()), left.data());
    painted_ = shown;
    paint(content(), frame_.topLeft());
    paint(label_.picture, label_.topLeft);
}

/** As far as it lies in the window. The place is in root pixels. */
void SpanningOverlayX11::paint(const QImage &image, QPoint topLeft)
{
    const QRect shown = QRect(topLeft, image.size()) & place_;
    if (shown.isEmpty()) {
        return;
    }
    const Canvas canvas = uploadImage(connection_, formats_, image);
    const QPoint from = shown.topLeft() - topLeft;
    const QPoint to = shown.topLeft() - place_.topLeft();
    xcb_copy_area(connection_.get(), canvas.pixmap.get(), window_.get(), transparent_.get(),
                  coordinate(from.x()), coordinate(from.y()), coordinate(to.x()),
                  coordinate(to.y()), extent(shown.width()), extent(shown.height()));
}

QImage SpanningOverlayX11::content() const
{
    QColor glass = glass_.tint;
    glass.setAlphaF(static_cast<float>(glass_.strength));
    QImage image(frame_.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(glass);
    QPainter painter(&image);
    for (const QRect &mark : picture_.marks) {
        painter.fillRect(mark, picture_.markColor);
    }
    painter.drawImage(picture_.panelOrigin, picture_.panel);
    return image;
}

void SpanningOverlayX11::setCursor(Qt::CursorShape shape)
{
    const std::uint32_t cursor = cursors_.cursor(shape);
    xcb_change_window_attributes(connection_.get(), window_.get(), XCB_CW_CURSOR, &cursor);
    events_.flush();
}

void SpanningOverlayX11::hide()
{
    frame_ = {};
    painted_ = {};
    isPressed_ = false;
    raiseTimer_.stop();
    xcb_unmap_window(connection_.get(), window_.get());
    events_.flush();
}

void SpanningOverlayX11::handle(const xcb_generic_event_t &event)
{
    const int type = event.response_type & 0x7f;
    const bool isShown = !frame_.isEmpty();
    if (const auto pointer = pointerEvent(event)) {
        inbox_.deliver(*pointer);
    } else if (type == XCB_DESTROY_NOTIFY) {
        if (reinterpret_cast<const xcb_destroy_notify_event_t &>(event).window == window_.get()) {
            lose();
        }
    } else if (type == XCB_EXPOSE && isShown) {
        paint();
        events_.flush();
    } else if (tellsOfMonitors(event, connection_, extensions_)) {
        checkDisplays();
    } else if (type >= XCB_UNMAP_NOTIFY && type <= XCB_CONFIGURE_NOTIFY) { // or mapped, reparented
        lookForAlert();
        stayOnTop();
    }
}

/** Immediately, and again a little later: some compositors notify before they restack. */
void SpanningOverlayX11::stayOnTop()
{
    if (!frame_.isEmpty() && !raiseTimer_.isActive()) {
        raise();
        raiseTimer_.start(50ms);
    }
}

/** Of the windows under the pointer, XWayland tells the topmost in its own order. */
void SpanningOverlayX11::raise()
{
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(connection_.get(), window_.get(), XCB_CONFIG_WINDOW_STACK_MODE, &above);
    events_.flush();
}

std::optional<PointerEvent> SpanningOverlayX11::pointerEvent(const xcb_generic_event_t &event)
{
    using Kind = PointerEvent::Kind;
    const int type = event.response_type & 0x7f;
    if (frame_.isEmpty() || type < XCB_BUTTON_PRESS || type > XCB_LEAVE_NOTIFY) {
        return std::nullopt;
    }
    // These events share their first fields.
    const auto &pointer = reinterpret_cast<const xcb_button_press_event_t &>(event);
    const QPoint place(pointer.root_x, pointer.root_y);
    const bool isLeft = pointer.detail == XCB_BUTTON_INDEX_1;
    const bool wasInside = isInside_;
    isInside_ = type != XCB_LEAVE_NOTIFY && frame_.contains(place);
    if (type == XCB_BUTTON_PRESS) {
        const bool starts = isLeft && isInside_;
        isPressed_ = isPressed_ || starts;
        return starts ? std::optional(PointerEvent{Kind::Press, place}) : std::nullopt;
    }
    if (type == XCB_BUTTON_RELEASE) {
        const bool ends = isLeft && std::exchange(isPressed_, isPressed_ && !isLeft);
        return ends ? std::optional(PointerEvent{Kind::Release, place}) : std::nullopt;
    }
    if (isPressed_ && type == XCB_MOTION_NOTIFY) {
        return PointerEvent{.kind = Kind::Drag,
                            .position = place,
                            .isShiftDown = (pointer.state & XCB_MOD_MASK_SHIFT) != 0};
    }
    if (isInside_ && !isPressed_) {
        return PointerEvent{Kind::Move, place};
    }
    return wasInside && !isPressed_ ? std::optional(PointerEvent{Kind::Leave, place})
                                    : std::nullopt;
}

/** An alert comes and goes with a window, whose mapping the root reports. */
void SpanningOverlayX11::lookForAlert()
{
    const bool hasAlert = OverlayStacking::hasAlert();
    if (frame_.isEmpty() || std::exchange(hasAlert_, hasAlert) == hasAlert) {
        return;
    }
    if (!hasAlert) {
        xcb_map_window(connection_.get(), window_.get()); // and paint when it is exposed
        events_.flush();
        return;
    }
    xcb_unmap_window(connection_.get(), window_.get());
    events_.flush();
    painted_ = {};
    isPressed_ = false;
    inbox_.dropMotion();
    if (const auto handler = onPointer) {
        handler({.kind = PointerEvent::Kind::Leave, .position = {}});
    }
}

void SpanningOverlayX11::checkDisplays()
{
    if (frame_.isEmpty()) {
        return;
    }
    const auto displays = monitors(connection_);
    const bool isReachable = std::ranges::any_of(
        displays, [this](const Display &display) { return display.pixels.intersects(frame_); });
    if (!isReachable) {
        lose();
    }
}

void SpanningOverlayX11::lose()
{
    if (const auto handler = std::exchange(onLost, {})) {
        handler();
    }
}

} // namespace glimmerpane::x11
