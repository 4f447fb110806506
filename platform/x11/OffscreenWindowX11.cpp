// SPDX-License-Identifier: MIT
#include "platform/x11/OffscreenWindowX11.h"

#include "platform/x11/DisplayLayerX11.h"
#include "platform/x11/Events.h"
#include "platform/x11/WindowProperties.h"
#include "platform/x11/Xwayland.h"

#include <QPointer>

#include <xcb/composite.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

namespace glimmerpane::x11
{

namespace
{

constexpr std::uint32_t normalState = 1; // ICCCM 4.1.3.1

} // namespace

QPoint unseenOrigin(QSize size)
{
    constexpr int faraway = -10000;
    // A window larger than that in both directions would reach onto the screen.
    const bool reachesScreen = std::min(size.width(), size.height()) > -faraway;
    return {faraway, reachesScreen ? -size.height() : faraway};
}

std::expected<std::unique_ptr<OutputWindow>, Error> OffscreenWindowX11::create(const QString &title,
                                                                               QSize size)
{
    return create(title, {unseenOrigin(size), size}, "_NET_WM_WINDOW_TYPE_NORMAL");
}

std::expected<std::unique_ptr<OutputWindow>, Error> OffscreenWindowX11::createAt(
    const QString &title, QRect frame)
{
    return create(title, frame, "_NET_WM_WINDOW_TYPE_UTILITY");
}

std::expected<std::unique_ptr<OutputWindow>, Error> OffscreenWindowX11::create(const QString &title,
                                                                               QRect frame,
                                                                               AtomName type)
{
    auto opened = openExtended();
    if (!opened) {
        return std::unexpected(opened.error());
    }
    auto window = std::make_unique<OffscreenWindowX11>(std::move(*opened), frame.size());
    window->place_ = frame.topLeft();
    if (auto created = window->createWindow(window->place_, false); !created) {
        return std::unexpected(created.error());
    }
    window->describe(title, type);
    // Browsers' pickers list a window only if it has WM_STATE. A window manager would set it, but
    // this window is unmanaged.
    const Connection &connection = window->connection_;
    const xcb_atom_t wmState = connection.atom("WM_STATE");
    const std::array<std::uint32_t, 2> state{normalState, XCB_WINDOW_NONE};
    setProperty(connection, window->window_.get(), wmState, wmState, 32, state.size(),
                state.data());
    window->watchViewers();
    return window;
}

OffscreenWindowX11::OffscreenWindowX11(ExtendedConnection opened, QSize size)
    : connection_(std::move(opened.connection))
    , extensions_(opened.extensions)
    , size_(size)
    , events_(connection_)
{
    events_.onEvent = [this](const xcb_generic_event_t &event) { handle(event); };
    events_.onBroken = [this] { isVisible_ = false; };
}

std::expected<void, Error> OffscreenWindowX11::createWindow(QPoint origin, bool isManaged)
{
    const auto &screen = connection_.screen();
    const std::uint32_t events = XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_EXPOSURE;
    const std::array<std::uint32_t, 3> values{screen.black_pixel, isManaged ? 0U : 1U,
                                              isManaged ? events | XCB_EVENT_MASK_PROPERTY_CHANGE
                                                        : events};
    const auto id = connection_.newId();
    const auto created = xcb_create_window_checked(
        connection_.get(), screen.root_depth, id, screen.root,
        static_cast<std::int16_t>(origin.x()), static_cast<std::int16_t>(origin.y()),
        static_cast<std::uint16_t>(size_.width()), static_cast<std::uint16_t>(size_.height()), 0,
        XCB_WINDOW_CLASS_INPUT_OUTPUT, screen.root_visual,
        XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values.data());
    const auto redirected = xcb_composite_redirect_window_checked(connection_.get(), id,
                                                                  XCB_COMPOSITE_REDIRECT_AUTOMATIC);
    if (auto result = connection_.check(created, "CreateWindow"); !result) {
        return result;
    }
    window_ = Window(connection_, id);
    return connection_.check(redirected, "RedirectWindow");
}

void OffscreenWindowX11::describe(const QString &title, AtomName type)
{
    describeWindow(connection_, window_.get(), title, type);
    const xcb_atom_t deleteWindow = connection_.atom("WM_DELETE_WINDOW");
    setProperty(connection_, window_.get(), connection_.atom("WM_PROTOCOLS"), XCB_ATOM_ATOM, 32, 1,
                &deleteWindow);
}

void OffscreenWindowX11::watchViewers()
{
    if (!isXwayland(connection_)) {
        viewers_ = RedirectionWatch::create(connection_, window_.get(), [this] { tellWatched(); });
    }
}

/** isWatched() may have changed. */
void OffscreenWindowX11::tellWatched() const
{
    if (onWatchedChanged) {
        onWatchedChanged();
    }
}

void OffscreenWindowX11::touchForViewers(const ViewerWatcher &watcher, std::function<void()> also)
{
    touch_.emplace(
        connection_, window_.get(), events_, watcher, [this] { tellWatched(); }, std::move(also));
}

void OffscreenWindowX11::map()
{
    const auto mapped = xcb_map_window_checked(connection_.get(), window_.get());
    mapped_ = mapped.sequence;
    isVisible_ = connection_.check(mapped, "MapWindow").has_value();
}

std::optional<bool> OffscreenWindowX11::isWatched() const
{
    if (touch_) {
        return touch_->isViewed(size_);
    }
    return viewers_ ? std::optional(viewers_->hasViewers()) : std::nullopt;
}

void OffscreenWindowX11::orderFront()
{
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(connection_.get(), window_.get(), XCB_CONFIG_WINDOW_STACK_MODE, &above);
    map();
    setFrameOrigin(place_);
}

void OffscreenWindowX11::orderOut()
{
    isVisible_ = false;
    xcb_unmap_window(connection_.get(), window_.get());
    events_.flush();
}

void OffscreenWindowX11::setFrameOrigin(QPoint origin)
{
    // The protocol takes positions as sign-extended 32-bit values.
    const std::array<std::uint32_t, 2> position{static_cast<std::uint32_t>(origin.x()),
                                                static_cast<std::uint32_t>(origin.y())};
    xcb_configure_window(connection_.get(), window_.get(),
                         XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y, position.data());
    events_.flush();
}

std::expected<std::unique_ptr<DisplayLayer>, Error> OffscreenWindowX11::makeDisplayLayer()
{
    // A late frame may be drawn when the window is gone.
    const auto drawn = [this, alive = QPointer(&events_)](bool isPictureNew) {
        if (alive && touch_) {
            touch_->noteDrawn(isPictureNew);
        }
    };
    return DisplayLayerX11::create(window_.get(), size_, Lending::AsPixmaps, drawn);
}

void OffscreenWindowX11::handle(const xcb_generic_event_t &event)
{
    switch (typeOf(event)) {
    case XCB_UNMAP_NOTIFY:
    case XCB_DESTROY_NOTIFY:
        // That of an earlier orderOut() may be late.
        isVisible_ = isVisible_ && event.full_sequence < mapped_;
        break;
    case XCB_EXPOSE:
        if (onContentsLost) {
            onContentsLost();
        }
        break;
    case XCB_CLIENT_MESSAGE: {
        const auto &message = eventAs<xcb_client_message_event_t>(event);
        if (message.type == connection_.atom("WM_PROTOCOLS")
            && message.data.data32[0] == connection_.atom("WM_DELETE_WINDOW") && onCloseRequest) {
            onCloseRequest();
        }
        break;
    }
    default:
        break;
    }
}

} // namespace glimmerpane::x11
