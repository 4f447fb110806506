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
    if (auto created = window->prepare(title, states); !created) {
        return std::unexpected(created.error());
    }
    return window;
}

std::expected<void, Error> ParkedWindowX11::prepare(const QString &title,
                                                    std::span<const AtomName> states)
{
    watchMonitors(connection_);
    wanted_ = choosePlace();
    if (auto created = createWindow(wanted_, true); !created) {
        return created;
    }
    describe(title);
    states_ = states;
    setWindowShape(connection_.get(), window_.get(), XCB_SHAPE_SK_INPUT, {});
    return {};
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
    // The manager forgets all of it when the window is withdrawn.
    setManagerHints(connection_, window_.get(),
                    {.size = size_, .place = wanted_, .states = states_});
    setTransparent(true);
    seen_.reset();
    move(wanted_);
    map();
    move(wanted_); // KWin complies only now
    events_.flush();
    touchForViewers(watcher_, [this] { touchMore(); });
}

void ParkedWindowX11::orderOut()
{
    stopTouching();
    isVisible_ = false;
    withdraw(connection_, window_.get());
    events_.flush();
}

void ParkedWindowX11::move(QPoint place)
{
    requestPlace(connection_, window_.get(), place);
}

void ParkedWindowX11::settled()
{
    // KWin asks for attention to a window that it does not give the keyboard.
    constexpr std::uint32_t remove = 0;
    constexpr std::uint32_t fromApplication = 1;
    sendToManager(
        connection_, window_.get(), "_NET_WM_STATE",
        {remove, connection_.atom("_NET_WM_STATE_DEMANDS_ATTENTION"), 0, fromApplication, 0});
}

/** ICCCM 4.1.3.1. The state of an earlier mapping may be heard of late. */
void ParkedWindowX11::followState()
{
    const xcb_atom_t wmState = connection_.atom("WM_STATE");
    events_.await<xcb_get_property_reply_t>(
        xcb_get_property(connection_.get(), 0, window_.get(), wmState, wmState, 0, 1),
        [this](const Reply<xcb_get_property_reply_t> &reply) {
            constexpr std::uint32_t withdrawn = 0;
            isManaged_ = reply && xcb_get_property_value_length(reply.get()) > 0
                && *static_cast<std::uint32_t *>(xcb_get_property_value(reply.get())) != withdrawn;
            checkPlace();
        });
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
                isSettled_ = false;
                setTransparent(true);
                move(wanted_);
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
        settled();
    }
}

void ParkedWindowX11::handle(const xcb_generic_event_t &event)
{
    OffscreenWindowX11::handle(event);
    if (tellsOfMonitors(event, connection_, extensions_)) {
        wanted_ = choosePlace();
        seen_.reset();
        checkPlace();
        return;
    }
    switch (typeOf(event)) {
    case XCB_PROPERTY_NOTIFY:
        if (eventAs<xcb_property_notify_event_t>(event).atom == connection_.atom("WM_STATE")) {
            followState();
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
