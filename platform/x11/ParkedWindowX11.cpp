// SPDX-License-Identifier: MIT
#include "platform/x11/ParkedWindowX11.h"

#include "platform/Geometry.h"
#include "platform/x11/Events.h"
#include "platform/x11/ManagerHints.h"
#include "platform/x11/ManagerMessages.h"
#include "platform/x11/Monitors.h"
#include "platform/x11/WindowProperties.h"
#include "platform/x11/WindowShape.h"

#include <array>
#include <utility>
#include <vector>

namespace glimmerpane::x11
{

namespace
{

// No SKIP_TASKBAR: the portal's dialog leaves such windows out.
constexpr std::array<AtomName, 1> states{"_NET_WM_STATE_BELOW"};

} // namespace

std::expected<std::unique_ptr<OutputWindow>, Error> ParkedWindowX11::create(const QString &title,
                                                                            QRect area,
                                                                            ViewerWatcher watcher)
{
    auto opened = openExtended();
    if (!opened) {
        return std::unexpected(opened.error());
    }
    auto window = std::make_unique<ParkedWindowX11>(std::move(*opened), area, std::move(watcher));
    const Connection &connection = window->connection_;
    watchMonitors(connection);
    window->wanted_ = window->choosePlace();
    if (auto created = window->createWindow(window->wanted_, true); !created) {
        return std::unexpected(created.error());
    }
    window->describe(title);
    setManagerHints(connection, window->window_.get(),
                    {.size = area.size(), .place = window->wanted_, .states = states});
    setWindowShape(connection.get(), window->window_.get(), XCB_SHAPE_SK_INPUT, {});
    return window;
}

ParkedWindowX11::ParkedWindowX11(ExtendedConnection opened, QRect area, ViewerWatcher watcher)
    : OffscreenWindowX11(std::move(opened), area.size())
    , area_(area)
    , watcher_(std::move(watcher))
{
}

QPoint ParkedWindowX11::choosePlace() const
{
    std::vector<QRect> displays;
    for (const Display &display : monitors(connection_)) {
        displays.push_back(display.pixels);
    }
    return onePixelPlace(area_, displays);
}

void ParkedWindowX11::setTransparent(bool isTransparent)
{
    const xcb_atom_t opacity = connection_.atom("_NET_WM_WINDOW_OPACITY");
    constexpr std::uint32_t transparent = 0;
    if (isTransparent) {
        setProperty(connection_, window_.get(), opacity, XCB_ATOM_CARDINAL, 32, 1, &transparent);
    } else {
        xcb_delete_property(connection_.get(), window_.get(), opacity);
    }
}

void ParkedWindowX11::orderFront()
{
    isManaged_ = false;
    isSettled_ = false;
    setTransparent(true);
    const auto mapped = xcb_map_window_checked(connection_.get(), window_.get());
    isVisible_ = connection_.check(mapped, "MapWindow").has_value();
    park();
    touchForViewers(watcher_);
}

void ParkedWindowX11::orderOut()
{
    stopTouching();
    isVisible_ = false;
    withdraw(connection_, window_.get());
    events_.flush();
}

void ParkedWindowX11::park()
{
    seen_.reset();
    requestPlace(connection_, window_.get(), wanted_);
    events_.flush();
}

/** Moves it away again if the manager has moved it, but does not insist on the same place. */
void ParkedWindowX11::checkPlace()
{
    if (!isManaged_ || !isVisible_) {
        return;
    }
    events_.await<xcb_translate_coordinates_reply_t>(
        xcb_translate_coordinates(connection_.get(), window_.get(), connection_.root(), 0, 0),
        [this](const auto &origin) {
            if (!origin) {
                return;
            }
            const QPoint place(origin->dst_x, origin->dst_y);
            if (place == wanted_) {
                settle();
            } else if (seen_ != place) {
                requestPlace(connection_, window_.get(), wanted_);
            }
            seen_ = place;
            events_.flush();
        });
    events_.flush();
}

/** Lets viewers see it. */
void ParkedWindowX11::settle()
{
    if (!std::exchange(isSettled_, true)) {
        setTransparent(false);
        // KWin asks for attention to a window that it does not give the keyboard.
        constexpr std::uint32_t remove = 0;
        constexpr std::uint32_t fromApplication = 1;
        sendToManager(
            connection_, window_.get(), "_NET_WM_STATE",
            {remove, connection_.atom("_NET_WM_STATE_DEMANDS_ATTENTION"), 0, fromApplication, 0});
    }
}

void ParkedWindowX11::handle(const xcb_generic_event_t &event)
{
    OffscreenWindowX11::handle(event);
    if (tellsOfMonitors(event, connection_, extensions_)) {
        wanted_ = choosePlace();
        park();
        return;
    }
    switch (typeOf(event)) {
    case XCB_PROPERTY_NOTIFY:
        if (eventAs<xcb_property_notify_event_t>(event).atom == connection_.atom("WM_STATE")) {
            isManaged_ = true;
            checkPlace();
        }
        break;
    case XCB_CONFIGURE_NOTIFY:
    case XCB_REPARENT_NOTIFY:
        checkPlace();
        break;
    default:
        break;
    }
}

} // namespace glimmerpane::x11
