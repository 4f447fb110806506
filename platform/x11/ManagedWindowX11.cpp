// SPDX-License-Identifier: MIT
#include "platform/x11/ManagedWindowX11.h"

#include "platform/Log.h"
#include "platform/x11/Compositing.h"
#include "platform/x11/ManagerMessages.h"
#include "platform/x11/WindowProperties.h"

#include <QRect>

#include <xcb/composite.h>
#include <xcb/xfixes.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <optional>
#include <utility>

namespace glimmerpane::x11
{

namespace
{

// EWMH
constexpr std::uint32_t allDesktops = 0xffffffff;
constexpr std::uint32_t fromApplication = 1;
constexpr std::uint32_t removeState = 0;
constexpr std::array states{"_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER",
                            "_NET_WM_STATE_BELOW", "_NET_WM_STATE_STICKY"};

/** The window manager's name; empty if none announces itself (EWMH). */
QByteArray windowManager(const Connection &connection)
{
    const auto check = propertyOf(connection, connection.root(), "_NET_SUPPORTING_WM_CHECK",
                                  sizeof(xcb_window_t));
    if (check.size() != sizeof(xcb_window_t)) {
        return {};
    }
    xcb_window_t window = XCB_WINDOW_NONE;
    std::memcpy(&window, check.constData(), sizeof(window));
    constexpr std::uint32_t longest = 100;
    return propertyOf(connection, window, "_NET_WM_NAME", longest);
}

/** Why a managed window is of no use here; null if it is. */
std::optional<QString> hindrance(const Connection &connection)
{
    const QByteArray manager = windowManager(connection);
    if (manager.isEmpty()) {
        return Error::tr("no window manager here keeps a list of windows");
    }
    // It would resize the window, and draw a frame around it.
    if (manager == "i3") {
        return Error::tr("%1 tiles every window that it lists").arg(QString::fromUtf8(manager));
    }
    return std::nullopt;
}

void setEmptyShape(const Connection &connection, xcb_window_t window, xcb_shape_kind_t kind)
{
    const auto nothing = connection.newId();
    xcb_xfixes_create_region(connection.get(), nothing, 0, nullptr);
    const Region empty(connection, nothing);
    xcb_xfixes_set_window_shape_region(connection.get(), window, kind, 0, 0, empty.get());
}

/** The child of the root that contains the window. */
xcb_window_t frameOf(const Connection &connection, xcb_window_t window)
{
    while (true) {
        const Reply<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(
            connection.get(), xcb_query_tree(connection.get(), window), nullptr));
        if (!tree || tree->parent == XCB_WINDOW_NONE || tree->parent == tree->root) {
            return window;
        }
        window = tree->parent;
    }
}

} // namespace

std::expected<std::unique_ptr<OutputWindow>, Error> ManagedWindowX11::create(const QString &title,
                                                                             QSize size)
{
    auto opened = openExtended();
    if (!opened) {
        return std::unexpected(opened.error());
    }
    if (const auto reason = hindrance(opened->connection)) {
        qCWarning(platformLog).noquote()
            << Error::tr("%1 will not be listed: %2.").arg(title, *reason);
        return OffscreenWindowX11::create(title, size);
    }
    auto window = std::make_unique<ManagedWindowX11>(std::move(*opened), size);
    window->origin_ = unseenOrigin(size);
    if (auto created = window->createWindow(window->origin_, true); !created) {
        return std::unexpected(created.error());
    }
    window->wmState_ = window->connection_.atom("WM_STATE");
    window->describe(title);
    window->describeToManager();
    window->watchCompositor();
    return window;
}

void ManagedWindowX11::describeToManager()
{
    const auto set = [this](xcb_atom_t property, xcb_atom_t type, const auto &items) {
        setProperty(connection_, window_.get(), property, type, 32, items.size(), items.data());
    };
    const auto width = static_cast<std::uint32_t>(size_.width());
    const auto height = static_cast<std::uint32_t>(size_.height());
    // ICCCM 4.1.2.3: USPosition, PSize, PMinSize, PMaxSize and PWinGravity, static.
    set(XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_WM_SIZE_HINTS,
        std::array<std::uint32_t, 18>{
            1 | 8 | 16 | 32 | 512, static_cast<std::uint32_t>(origin_.x()),
            static_cast<std::uint32_t>(origin_.y()), width, height, width, height, width, height, 0,
            0, 0, 0, 0, 0, 0, 0, XCB_GRAVITY_STATIC});
    // ICCCM 4.1.2.4: the flag InputHint, and no input.
    set(XCB_ATOM_WM_HINTS, XCB_ATOM_WM_HINTS, std::array<std::uint32_t, 9>{1});
    // Motif's hints, which every manager supports: the flag for decorations, and no decorations.
    const xcb_atom_t motif = connection_.atom("_MOTIF_WM_HINTS");
    set(motif, motif, std::array<std::uint32_t, 5>{2});
    std::array<xcb_atom_t, states.size()> atoms{};
    std::ranges::transform(states, atoms.begin(),
                           [this](const char *name) { return connection_.atom(name); });
    set(connection_.atom("_NET_WM_STATE"), XCB_ATOM_ATOM, atoms);
    const auto setNumber = [&](const char *name, std::uint32_t value) {
        set(connection_.atom(name), XCB_ATOM_CARDINAL, std::array{value});
    };
    setNumber("_NET_WM_DESKTOP", allDesktops);
    setNumber("_NET_WM_USER_TIME", 0); // EWMH: no focus when it is mapped
    makeTransparent();
    setEmptyShape(connection_, window_.get(), XCB_SHAPE_SK_INPUT);
}

void ManagedWindowX11::makeTransparent()
{
    constexpr std::uint32_t transparent = 0;
    setProperty(connection_, window_.get(), connection_.atom("_NET_WM_WINDOW_OPACITY"),
                XCB_ATOM_CARDINAL, 32, 1, &transparent);
}

void ManagedWindowX11::watchCompositor()
{
    xcb_xfixes_select_selection_input(connection_.get(), window_.get(),
                                      compositingSelection(connection_),
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER
                                          | XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY
                                          | XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
}

void ManagedWindowX11::orderFront()
{
    // If it will get a frame, it stays invisible until then.
    setHiddenByServer(true);
    isOrderedIn_ = true;
    const auto mapped = xcb_map_window_checked(connection_.get(), window_.get());
    isVisible_ = connection_.check(mapped, "MapWindow").has_value();
    moveAway();
    events_.flush();
}

void ManagedWindowX11::orderOut()
{
    isOrderedIn_ = false;
    isVisible_ = false;
    withdraw(connection_, window_.get());
    events_.flush();
}

void ManagedWindowX11::moveAway()
{
    setFrameOrigin(origin_);
    // kwin and fluxbox accept a position from this message, though not from the window's own
    // request. EWMH: the gravity, the flags for x and y, and the source of the request.
    constexpr std::uint32_t both = 3U << 8U;
    sendToManager(connection_, window_.get(), "_NET_MOVERESIZE_WINDOW",
                  {XCB_GRAVITY_STATIC | both | fromApplication << 12U,
                   static_cast<std::uint32_t>(origin_.x()), static_cast<std::uint32_t>(origin_.y()),
                   0, 0});
}

void ManagedWindowX11::setHiddenByServer(bool hidden)
{
    if (isHiddenByServer_ == hidden) {
        return;
    }
    const auto request
        = hidden ? xcb_composite_redirect_window_checked : xcb_composite_unredirect_window_checked;
    const auto result = connection_.check(
        request(connection_.get(), window_.get(), XCB_COMPOSITE_REDIRECT_MANUAL), "RedirectWindow");
    isHiddenByServer_ = result ? hidden : isHiddenByServer_;
    // The server would paint a background on the screen.
    const auto &black = connection_.screen().black_pixel;
    constexpr std::uint32_t none = XCB_BACK_PIXMAP_NONE;
    xcb_change_window_attributes(connection_.get(), window_.get(),
                                 isHiddenByServer_ ? XCB_CW_BACK_PIXMAP : XCB_CW_BACK_PIXEL,
                                 isHiddenByServer_ ? &none : &black);
}

/**
 * Hides its frame, which would otherwise still be drawn, or keep old pixels on the screen, and take
 * clicks.
 */
void ManagedWindowX11::hideFrame()
{
    setEmptyShape(connection_, frameOf(connection_, window_.get()), XCB_SHAPE_SK_BOUNDING);
}

bool ManagedWindowX11::isSeen() const
{
    if (isFramed_ || isComposited(connection_)) {
        return false;
    }
    const auto cookie
        = xcb_translate_coordinates(connection_.get(), window_.get(), connection_.root(), 0, 0);
    const Reply<xcb_translate_coordinates_reply_t> origin(
        xcb_translate_coordinates_reply(connection_.get(), cookie, nullptr));
    const auto &screen = connection_.screen();
    return origin
        && QRect({origin->dst_x, origin->dst_y}, size_)
               .intersects({0, 0, screen.width_in_pixels, screen.height_in_pixels});
}

void ManagedWindowX11::hideAgain()
{
    if (!isManaged_ || !isOrderedIn_ || isShown_) {
        return;
    }
    if (!std::exchange(isPlaced_, true)) {
        moveAway(); // fluxbox only heeds it now
        makeTransparent(); // and marco only heeds this now
    }
    // A manually redirected child of the root would block a compositor that starts later.
    setHiddenByServer(isFramed_);
    if (isFramed_) {
        hideFrame();
    }
    if (isSeen()) {
        moveAway(); // nothing prevents it if the manager has quit
        if (isSeen()) {
            show();
        }
    }
    events_.flush();
}

void ManagedWindowX11::show()
{
    isShown_ = true;
    qCWarning(platformLog).noquote() << Error::tr(
        "The window manager keeps \"Glimmerpane - Output\" on the screen, and without a "
        "compositor it cannot be hidden there. Keep it outside the area.");
    for (const char *name : {"_NET_WM_WINDOW_OPACITY", "_MOTIF_WM_HINTS"}) {
        xcb_delete_property(connection_.get(), window_.get(), connection_.atom(name));
    }
    xcb_xfixes_set_window_shape_region(connection_.get(), window_.get(), XCB_SHAPE_SK_INPUT, 0, 0,
                                       XCB_XFIXES_REGION_NONE);
    for (const char *state : states) {
        sendToManager(connection_, window_.get(), "_NET_WM_STATE",
                      {removeState, connection_.atom(state), 0, fromApplication, 0});
    }
    origin_ = {0, 0};
    moveAway();
}

void ManagedWindowX11::handle(const xcb_generic_event_t &event)
{
    OffscreenWindowX11::handle(event);
    const int type = event.response_type & 0x7f;
    switch (type) {
    case XCB_MAP_NOTIFY: // also after a manager starts or quits, which unmaps it briefly
        isVisible_ = isOrderedIn_;
        break;
    case XCB_REPARENT_NOTIFY:
        isFramed_ = reinterpret_cast<const xcb_reparent_notify_event_t &>(event).parent
            != connection_.root();
        hideAgain();
        break;
    case XCB_PROPERTY_NOTIFY:
        if (reinterpret_cast<const xcb_property_notify_event_t &>(event).atom == wmState_) {
            isManaged_ = true;
            hideAgain();
        }
        break;
    case XCB_CONFIGURE_NOTIFY:
        hideAgain();
        break;
    default:
        if (type == extensions_.firstXFixesEvent + XCB_XFIXES_SELECTION_NOTIFY) {
            hideAgain();
        }
        break;
    }
}

} // namespace glimmerpane::x11
