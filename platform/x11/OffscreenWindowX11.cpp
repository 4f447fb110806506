// SPDX-License-Identifier: MIT
#include "platform/x11/OffscreenWindowX11.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QSysInfo>

#include <xcb/composite.h>

#include <array>
#include <cstdint>
#include <string_view>
#include <utility>

namespace glimmerpane::x11
{

namespace
{

using namespace std::string_view_literals;

constexpr std::uint32_t normalState = 1; // ICCCM 4.1.3.1
constexpr auto resourceClass = "glimmerpane\0Glimmerpane\0"sv; // ICCCM 4.1.2.5

} // namespace

std::expected<std::unique_ptr<OffscreenWindow>, Error> OffscreenWindowX11::create(
    const QString &title, QPoint origin, QSize size)
{
    auto connection = Connection::open();
    if (!connection) {
        return std::unexpected(connection.error());
    }
    if (const auto extensions = requireExtensions(*connection); !extensions) {
        return std::unexpected(extensions.error());
    }
    std::unique_ptr<OffscreenWindowX11> window(
        new OffscreenWindowX11(std::move(*connection), size));
    if (auto created = window->createWindow(origin); !created) {
        return std::unexpected(created.error());
    }
    window->describe(title);
    return window;
}

OffscreenWindowX11::OffscreenWindowX11(Connection connection, QSize size)
    : connection_(std::move(connection))
    , size_(size)
    , events_(connection_.fileDescriptor(), QSocketNotifier::Read)
{
    QObject::connect(&events_, &QSocketNotifier::activated, &events_, [this] { readEvents(); });
}

std::expected<void, Error> OffscreenWindowX11::createWindow(QPoint origin)
{
    const auto &screen = connection_.screen();
    const std::array<std::uint32_t, 3> values{
        screen.black_pixel, 1, XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_EXPOSURE};
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

void OffscreenWindowX11::describe(const QString &title)
{
    const auto set = [this](xcb_atom_t property, xcb_atom_t type, std::uint8_t format,
                            std::size_t length, const void *data) {
        xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, window_.get(), property, type,
                            format, static_cast<std::uint32_t>(length), data);
    };
    const auto atom = [this](const char *name) { return connection_.atom(name); };
    const auto setText = [&](xcb_atom_t property, xcb_atom_t type, const QByteArray &text) {
        set(property, type, 8, std::size_t(text.size()), text.constData());
    };
    protocols_ = atom("WM_PROTOCOLS");
    deleteWindow_ = atom("WM_DELETE_WINDOW");

    setText(XCB_ATOM_WM_NAME, XCB_ATOM_STRING, title.toLatin1());
    setText(atom("_NET_WM_NAME"), atom("UTF8_STRING"), title.toUtf8());
    set(XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8, resourceClass.size(), resourceClass.data());
    set(protocols_, XCB_ATOM_ATOM, 32, 1, &deleteWindow_);
    // Browsers' pickers list a window only if it has WM_STATE. A window manager would set it, but
    // none manages this window.
    const xcb_atom_t wmState = atom("WM_STATE");
    const std::array<std::uint32_t, 2> state{normalState, XCB_WINDOW_NONE};
    set(wmState, wmState, 32, state.size(), state.data());
    // One type and no more: some pickers read a list of two as one number.
    const xcb_atom_t type = atom("_NET_WM_WINDOW_TYPE_NORMAL");
    set(atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM, 32, 1, &type);
    // EWMH: _NET_WM_PID is only valid together with WM_CLIENT_MACHINE.
    setText(XCB_ATOM_WM_CLIENT_MACHINE, XCB_ATOM_STRING, QSysInfo::machineHostName().toLatin1());
    const auto pid = static_cast<std::uint32_t>(QCoreApplication::applicationPid());
    set(atom("_NET_WM_PID"), XCB_ATOM_CARDINAL, 32, 1, &pid);
}

void OffscreenWindowX11::orderFront()
{
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(connection_.get(), window_.get(), XCB_CONFIG_WINDOW_STACK_MODE, &above);
    const auto mapped = xcb_map_window_checked(connection_.get(), window_.get());
    isVisible_ = connection_.check(mapped, "MapWindow").has_value();
    // Events that arrived together with the answer are in memory: no socket will tell of them.
    QMetaObject::invokeMethod(&events_, [this] { readEvents(); }, Qt::QueuedConnection);
}

void OffscreenWindowX11::orderOut()
{
    isVisible_ = false;
    xcb_unmap_window(connection_.get(), window_.get());
    connection_.flush();
}

void OffscreenWindowX11::setFrameOrigin(QPoint origin)
{
    // The protocol takes positions as 32-bit values with the sign kept.
    const std::array<std::uint32_t, 2> position{static_cast<std::uint32_t>(origin.x()),
                                                static_cast<std::uint32_t>(origin.y())};
    xcb_configure_window(connection_.get(), window_.get(),
                         XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y, position.data());
    connection_.flush();
}

void OffscreenWindowX11::readEvents()
{
    while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(connection_.get())}) {
        handle(*event);
    }
    if (connection_.isBroken()) {
        events_.setEnabled(false);
        isVisible_ = false;
    }
}

void OffscreenWindowX11::handle(const xcb_generic_event_t &event)
{
    switch (event.response_type & 0x7f) {
    case XCB_UNMAP_NOTIFY:
    case XCB_DESTROY_NOTIFY:
        isVisible_ = false;
        break;
    case XCB_EXPOSE:
        if (onContentsLost) {
            onContentsLost();
        }
        break;
    case XCB_CLIENT_MESSAGE: {
        const auto &message = reinterpret_cast<const xcb_client_message_event_t &>(event);
        if (message.type == protocols_ && message.data.data32[0] == deleteWindow_
            && onCloseRequest) {
            onCloseRequest();
        }
        break;
    }
    default:
        break;
    }
}

} // namespace glimmerpane::x11
