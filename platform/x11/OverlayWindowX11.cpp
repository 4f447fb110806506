// SPDX-License-Identifier: MIT
#include "platform/x11/OverlayWindowX11.h"

#include "platform/x11/Compositing.h"
#include "platform/x11/Events.h"
#include "platform/x11/Monitors.h"
#include "platform/x11/WindowGeometry.h"
#include "platform/x11/WindowProperties.h"
#include "services/CallOnce.h"

#include <QPointer>

#include <algorithm>
#include <array>
#include <chrono>
#include <utility>

namespace glimmerpane::x11
{

namespace
{

using namespace std::chrono_literals;

} // namespace

std::expected<std::unique_ptr<OverlayWindow>, Error> OverlayWindowX11::create(
    const QString &title, QRect area, const FrostedGlass &glass)
{
    auto opened = openExtended();
    if (!opened) {
        return std::unexpected(opened.error());
    }
    const auto formats = renderFormats(opened->connection);
    if (!formats) {
        return std::unexpected(formats.error());
    }
    std::unique_ptr<OverlayWindowX11> window(
        new OverlayWindowX11(std::move(opened->connection), opened->extensions, *formats, glass));
    if (auto created = window->createWindow(); !created) {
        return std::unexpected(created.error());
    }
    window->describe(title);
    window->watchDesktop();
    window->painter_.takeBackdrop(window->extensions_, window->window_.get(), area);
    return window;
}

OverlayWindowX11::OverlayWindowX11(Connection connection, const Extensions &extensions,
                                   const RenderFormats &formats, const FrostedGlass &glass)
    : connection_(std::move(connection))
    , extensions_(extensions)
    , painter_(connection_, formats, glass)
    , cursors_(connection_)
    , stacking_(connection_)
    , label_(connection_, formats)
    , events_(connection_)
{
    events_.onEvent = [this](const xcb_generic_event_t &event) { handle(event); };
    events_.onDrained = [this] { inbox_.deliverMotion(); };
    events_.onBroken = [this] { lose(); };
    raiseTimer_.setSingleShot(true);
    QObject::connect(&raiseTimer_, &QTimer::timeout, &events_, [this] { restack(); });
    renewTimer_.setSingleShot(true);
    QObject::connect(&renewTimer_, &QTimer::timeout, &events_, [this] { renewGlass(); });
}

std::expected<void, Error> OverlayWindowX11::createWindow()
{
    const auto colormap = connection_.newId();
    xcb_create_colormap(connection_.get(), XCB_COLORMAP_ALLOC_NONE, colormap, connection_.root(),
                        painter_.visual());
    colormap_ = Colormap(connection_, colormap);
    // A window whose depth differs from its parent's needs its own border and colormap.
    const std::array<std::uint32_t, 4> values{
        0, 1,
        XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE | XCB_EVENT_MASK_POINTER_MOTION
            | XCB_EVENT_MASK_ENTER_WINDOW | XCB_EVENT_MASK_LEAVE_WINDOW
            | XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_EXPOSURE,
        colormap};
    const auto id = connection_.newId();
    const auto created = xcb_create_window_checked(
        connection_.get(), painter_.depth(), id, connection_.root(), 0, 0, 1, 1, 0,
        XCB_WINDOW_CLASS_INPUT_OUTPUT, painter_.visual(),
        XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP,
        values.data());
    if (auto result = connection_.check(created, "CreateWindow"); !result) {
        return result;
    }
    window_ = Window(connection_, id);
    return {};
}

void OverlayWindowX11::describe(const QString &title)
{
    describeOverlay(connection_, window_.get(), title);
    if (painter_.isTranslucent()) { // an empty list means the whole window
        setProperty(connection_, window_.get(), connection_.atom(blurBehindProperty),
                    XCB_ATOM_CARDINAL, 32, 0, nullptr);
    }
}

void OverlayWindowX11::watchDesktop()
{
    watchMonitors(connection_, XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
}

void OverlayWindowX11::present(QRect frame, const OverlayPicture &picture,
                               const OverlayLabel &label)
{
    const OverlayScene scene = sceneOf(frame, picture);
    const auto before = std::exchange(shown_, scene);
    const QRect place = scene.window;
    if (before && painter_.isOnlyMoved(*before, scene)) {
        setGeometry(connection_, window_.get(), place);
        painter_.paintGlass(window_.get(), scene);
        isBackgroundOld_ = true;
    } else {
        replaceBackground(scene);
        setGeometry(connection_, window_.get(), place);
        if (!before) {
            restack();
            xcb_map_window(connection_.get(), window_.get());
        } else if (before->window.size() == place.size()) { // a new size has already been painted
            xcb_clear_area(connection_.get(), 0, window_.get(), 0, 0, 0, 0);
        }
    }
    label_.show(label);
    renewSoon();
    events_.flush();
}

/** No timer runs unless something has changed. */
void OverlayWindowX11::renewSoon()
{
    if (shown_ && !renewTimer_.isActive() && painter_.mayBeOld(*shown_)) {
        renewTimer_.start(100ms);
    }
}

void OverlayWindowX11::renewGlass()
{
    if (shown_ && painter_.renewGlass(window_.get(), *shown_)) {
        isBackgroundOld_ = true;
    }
    events_.flush();
}

OverlayScene OverlayWindowX11::sceneOf(QRect frame, const OverlayPicture &picture) const
{
    // A window far larger than the screen would only waste server memory.
    constexpr int margin = 100;
    const QRect root = connection_.rootRectangle();
    const bool isReasonable
        = frame.width() <= 2 * root.width() && frame.height() <= 2 * root.height();
    const QRect seen
        = isReasonable ? frame : frame & root.adjusted(-margin, -margin, margin, margin);
    return {.window = {seen.topLeft(), seen.size().expandedTo({1, 1})},
            .picture = picture,
            .pictureOrigin = frame.topLeft() - seen.topLeft()};
}

/** A pixmap in use as a background must not be drawn into (X11 protocol, CreateWindow). */
void OverlayWindowX11::replaceBackground(const OverlayScene &scene)
{
    std::swap(backgrounds_[0], backgrounds_[1]);
    Canvas &canvas = backgrounds_[0];
    const QSize size = canvas.size.expandedTo(scene.window.size());
    if (canvas.size != size) {
        canvas = painter_.makeCanvas(size);
    }
    painter_.paint(canvas, scene);
    const std::uint32_t background = canvas.pixmap.get();
    xcb_change_window_attributes(connection_.get(), window_.get(), XCB_CW_BACK_PIXMAP, &background);
    isBackgroundOld_ = false;
}

void OverlayWindowX11::setCursor(Qt::CursorShape shape)
{
    const std::uint32_t cursor = cursors_.cursor(shape);
    xcb_change_window_attributes(connection_.get(), window_.get(), XCB_CW_CURSOR, &cursor);
    events_.flush();
}

void OverlayWindowX11::hide()
{
    shown_.reset();
    raiseTimer_.stop();
    renewTimer_.stop();
    label_.show({});
    xcb_unmap_window(connection_.get(), window_.get());
    events_.flush();
}

void OverlayWindowX11::handle(const xcb_generic_event_t &event)
{
    const int type = typeOf(event);
    painter_.note(event);
    renewSoon();
    if (const auto pointer = pointerEvent(event)) {
        if (!OverlayStacking::hasAlert()) {
            inbox_.deliver(*pointer);
        }
    } else if (type == XCB_DESTROY_NOTIFY) {
        if (eventAs<xcb_destroy_notify_event_t>(event).window == window_.get()) {
            lose();
        }
    } else if (type == XCB_EXPOSE && isBackgroundOld_ && shown_) {
        painter_.paintGlass(window_.get(),
                            *shown_); // the server painted uncovered parts with the old one
        events_.flush();
    } else if (type == XCB_PROPERTY_NOTIFY) {
        if (tellsOfRestacking(connection_, eventAs<xcb_property_notify_event_t>(event))) {
            stayOnTop();
        }
    } else if (tellsOfMonitors(event, connection_, extensions_)) {
        checkDisplays();
    } else if (type >= XCB_UNMAP_NOTIFY && type <= XCB_CONFIGURE_NOTIFY) { // or mapped, reparented
        lookForAlert(type != XCB_CONFIGURE_NOTIFY);
    }
}

std::optional<PointerEvent> OverlayWindowX11::pointerEvent(const xcb_generic_event_t &event)
{
    using Kind = PointerEvent::Kind;
    // These events share their first fields; XCB_BUTTON_INDEX_1 is the left button.
    const auto &pointer = eventAs<xcb_button_press_event_t>(event);
    const auto at = [&](Kind kind) {
        return PointerEvent{.kind = kind,
                            .position = {pointer.root_x, pointer.root_y},
                            .isShiftDown = (pointer.state & XCB_MOD_MASK_SHIFT) != 0};
    };
    switch (typeOf(event)) {
    case XCB_BUTTON_PRESS:
        if (pointer.detail == XCB_BUTTON_INDEX_1) {
            isPressed_ = true;
            return at(Kind::Press);
        }
        break;
    case XCB_BUTTON_RELEASE:
        if (pointer.detail == XCB_BUTTON_INDEX_1) {
            isPressed_ = false;
            return at(Kind::Release);
        }
        break;
    case XCB_MOTION_NOTIFY:
    case XCB_ENTER_NOTIFY:
        // Another client's grab can intercept the release.
        isPressed_ = isPressed_ && (pointer.state & XCB_BUTTON_MASK_1) != 0;
        return at(isPressed_ ? Kind::Drag : Kind::Move);
    case XCB_LEAVE_NOTIFY:
        if (!isPressed_) {
            return at(Kind::Leave);
        }
        break;
    default:
        break;
    }
    return std::nullopt;
}

/** Immediately, and again a little later: some managers notify before they restack. */
void OverlayWindowX11::stayOnTop()
{
    if (shown_ && !raiseTimer_.isActive()) {
        restack();
        raiseTimer_.start(50ms);
    }
}

void OverlayWindowX11::restack()
{
    stacking_.restack(window_.get());
    label_.restack(stacking_);
    events_.flush();
}

/** While an alert is open, the overlay ignores the pointer; a drag ends where it is. */
void OverlayWindowX11::lookForAlert(bool mayBeNew)
{
    const bool hasAlert = OverlayStacking::hasAlert();
    if (!shown_ || (!hasAlert && !hasAlert_)) {
        return;
    }
    if (mayBeNew) { // the alert, its later frame, or a manager that has put us back on top
        stayOnTop();
    }
    stacking_.yield(window_.get(), shown_->window);
    events_.flush();
    if (std::exchange(hasAlert_, hasAlert) || !hasAlert) {
        return;
    }
    isPressed_ = false;
    inbox_.dropMotion();
    if (const auto handler = onPointer) {
        handler({.kind = PointerEvent::Kind::Leave, .position = {}});
    }
}

void OverlayWindowX11::checkDisplays()
{
    if (!shown_) {
        return;
    }
    const auto displays = monitors(connection_);
    const bool isReachable = std::ranges::any_of(displays, [this](const Display &display) {
        return display.pixels.intersects(shown_->window);
    });
    if (!isReachable) {
        lose();
    }
}

void OverlayWindowX11::lose()
{
    callOnce(onLost);
}

} // namespace glimmerpane::x11
