// SPDX-License-Identifier: MIT
#include "platform/x11/ManagedWindowX11.h"

#include "platform/Log.h"
#include "platform/x11/Compositing.h"
#include "platform/x11/Events.h"
#include "platform/x11/ManagerHints.h"
#include "platform/x11/ManagerMessages.h"
#include "platform/x11/WindowManagerName.h"
#include "platform/x11/WindowProperties.h"
#include "platform/x11/WindowShape.h"

#include <QRect>

#include <xcb/composite.h>
#include <xcb/xfixes.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <utility>

namespace glimmerpane::x11
{

namespace
{

// EWMH
constexpr std::uint32_t fromApplication = 1;
constexpr std::uint32_t removeState = 0;
constexpr std::array<AtomName, 4> states{"_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER",
                                         "_NET_WM_STATE_BELOW", "_NET_WM_STATE_STICKY"};

/** Why a managed window is of no use here; null if it is. */
std::optional<QString> hindrance(const Connection &connection)
{
    const QByteArray manager = windowManagerName(connection);
    if (manager.isEmpty()) {
        return Error::tr("no window manager here keeps a list of windows");
    }
    // It would resize the window, and draw a frame around it.
    if (manager == "i3") {
        return Error::tr("%1 tiles every window that it lists").arg(QString::fromUtf8(manager));
    }
    return std::nullopt;
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
    window->describe(title);
    window->describeToManager();
    window->watchCompositor();
    window->watchViewers();
    return window;
}

ManagedWindowX11::ManagedWindowX11(ExtendedConnection opened, QSize size)
    : OffscreenWindowX11(std::move(opened), size)
    , parent_(connection_.root())
{
}

void ManagedWindowX11::describeToManager()
{
    setManagerHints(connection_, window_.get(),
                    {.size = size_, .place = origin_, .states = states});
    makeTransparent();
    setWindowShape(connection_.get(), window_.get(), XCB_SHAPE_SK_INPUT, {});
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
    isComposited_ = isComposited(connection_); // from now on, events tell
}

void ManagedWindowX11::orderFront()
{
    // If it will get a frame, it stays invisible until then.
    if (!redirection_) {
        const auto request = xcb_composite_redirect_window_checked(connection_.get(), window_.get(),
                                                                   XCB_COMPOSITE_REDIRECT_MANUAL);
        if (connection_.check(request, "RedirectWindow")) {
            setRedirection(request.sequence);
        }
    }
    stage_ = Stage::Requested;
    const auto mapped = xcb_map_window_checked(connection_.get(), window_.get());
    isVisible_ = connection_.check(mapped, "MapWindow").has_value();
    moveAway();
    events_.flush();
}

void ManagedWindowX11::orderOut()
{
    stage_ = Stage::Withdrawn;
    isVisible_ = false;
    withdraw(connection_, window_.get());
    events_.flush();
}

void ManagedWindowX11::moveAway()
{
    setFrameOrigin(origin_);
    requestPlace(connection_, window_.get(), origin_);
}

/** Null if the server draws the window. */
void ManagedWindowX11::setRedirection(std::optional<std::uint32_t> request)
{
    redirection_ = request;
    // The server would paint a background on the screen.
    const auto &black = connection_.screen().black_pixel;
    constexpr std::uint32_t none = XCB_BACK_PIXMAP_NONE;
    xcb_change_window_attributes(connection_.get(), window_.get(),
                                 redirection_ ? XCB_CW_BACK_PIXMAP : XCB_CW_BACK_PIXEL,
                                 redirection_ ? &none : &black);
}

/** Once the manager manages it. */
void ManagedWindowX11::hide()
{
    stage_ = Stage::Hidden;
    moveAway(); // fluxbox only heeds it now
    makeTransparent(); // and marco only heeds this now
}

void ManagedWindowX11::hideAgain()
{
    if (stage_ != Stage::Hidden) {
        return;
    }
    if (isFramed()) {
        if (!redirection_) { // a compositor may forbid it, as an event will tell
            const auto request = xcb_composite_redirect_window(connection_.get(), window_.get(),
                                                               XCB_COMPOSITE_REDIRECT_MANUAL);
            setRedirection(request.sequence);
        }
        hideFrame(parent_);
    } else if (redirection_) {
        // A manually redirected child of the root would block a compositor that starts later.
        xcb_composite_unredirect_window(connection_.get(), window_.get(),
                                        XCB_COMPOSITE_REDIRECT_MANUAL);
        setRedirection(std::nullopt);
    }
    ifSeen([this] {
        moveAway(); // nothing prevents it if the manager has quit
        ifSeen([this] { show(); });
    });
    events_.flush();
}

/**
 * Hides the child of the root that contains the window, which would otherwise still be drawn, or
 * keep old pixels on the screen, and take clicks.
 */
void ManagedWindowX11::hideFrame(xcb_window_t inside)
{
    events_.await<xcb_query_tree_reply_t>(
        xcb_query_tree(connection_.get(), inside), [this, inside](const auto &tree) {
            if (!tree || stage_ != Stage::Hidden || !isFramed()) {
                return;
            }
            if (tree->parent == tree->root) {
                setWindowShape(connection_.get(), inside, XCB_SHAPE_SK_BOUNDING, {});
            } else {
                hideFrame(tree->parent);
            }
            events_.flush();
        });
}

bool ManagedWindowX11::isDrawn() const
{
    return stage_ == Stage::Hidden && !isFramed() && !isComposited_;
}

/** Calls `seen` if it is on the screen. */
void ManagedWindowX11::ifSeen(std::function<void()> seen)
{
    if (!isDrawn()) {
        return;
    }
    events_.await<xcb_translate_coordinates_reply_t>(
        xcb_translate_coordinates(connection_.get(), window_.get(), connection_.root(), 0, 0),
        [this, seen = std::move(seen)](const auto &origin) {
            if (origin && isDrawn()
                && connection_.rootRectangle().intersects(
                    {{origin->dst_x, origin->dst_y}, size_})) {
                seen();
                events_.flush();
            }
        });
}

void ManagedWindowX11::show()
{
    stage_ = Stage::Shown;
    qCWarning(platformLog).noquote() << Error::tr(
        "The window manager keeps \"Glimmerpane - Output\" on the screen, and without a "
        "compositor it cannot be hidden there. Keep it outside the area.");
    for (const AtomName name : {AtomName("_NET_WM_WINDOW_OPACITY"), AtomName("_MOTIF_WM_HINTS")}) {
        xcb_delete_property(connection_.get(), window_.get(), connection_.atom(name));
    }
    resetWindowShape(connection_.get(), window_.get(), XCB_SHAPE_SK_INPUT);
    for (const AtomName state : states) {
        sendToManager(connection_, window_.get(), "_NET_WM_STATE",
                      {removeState, connection_.atom(state), 0, fromApplication, 0});
    }
    origin_ = {0, 0};
    moveAway();
}

void ManagedWindowX11::handle(const xcb_generic_event_t &event)
{
    OffscreenWindowX11::handle(event);
    const int type = typeOf(event);
    switch (type) {
    case XCB_MAP_NOTIFY: // also after a manager starts or quits, which unmaps it briefly
        isVisible_ = stage_ != Stage::Withdrawn;
        break;
    case XCB_REPARENT_NOTIFY:
        parent_ = eventAs<xcb_reparent_notify_event_t>(event).parent;
        hideAgain();
        break;
    case XCB_PROPERTY_NOTIFY:
        if (eventAs<xcb_property_notify_event_t>(event).atom == connection_.atom("WM_STATE")) {
            if (stage_ == Stage::Requested) {
                hide();
            }
            hideAgain();
        }
        break;
    case XCB_CONFIGURE_NOTIFY:
        hideAgain();
        break;
    case errorType:
        if (redirection_ == eventAs<xcb_generic_error_t>(event).full_sequence) {
            setRedirection(std::nullopt);
            events_.flush();
        }
        break;
    default:
        if (type == extensions_.firstXFixesEvent + XCB_XFIXES_SELECTION_NOTIFY) {
            isComposited_
                = eventAs<xcb_xfixes_selection_notify_event_t>(event).owner != XCB_WINDOW_NONE;
            hideAgain();
        }
        break;
    }
}

} // namespace glimmerpane::x11
