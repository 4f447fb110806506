// SPDX-License-Identifier: MIT
#include "platform/x11/WindowProperties.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QSysInfo>

#include <array>
#include <string_view>

namespace glimmerpane::x11
{

namespace
{

using namespace std::string_view_literals;

constexpr auto resourceClass = "glimmerpane\0Glimmerpane\0"sv; // ICCCM 4.1.2.5
constexpr std::uint32_t bytesPerWord = 4; // GetProperty counts in words

} // namespace

void setProperty(const Connection &connection, xcb_window_t window, xcb_atom_t property,
                 xcb_atom_t type, std::uint8_t format, std::size_t length, const void *data)
{
    xcb_change_property(connection.get(), XCB_PROP_MODE_REPLACE, window, property, type, format,
                        static_cast<std::uint32_t>(length), data);
}

PropertyQuestion::PropertyQuestion(const Connection &connection, xcb_window_t window,
                                   xcb_atom_t property, std::uint32_t longest, xcb_atom_t type)
    : connection_(connection.get())
    , cookie_(xcb_get_property(connection_, 0, window, property, type, 0,
                               (longest + bytesPerWord - 1) / bytesPerWord))
{
}

QByteArray PropertyQuestion::bytes() const
{
    const Reply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(connection_, cookie_, nullptr));
    return reply ? QByteArray(static_cast<const char *>(xcb_get_property_value(reply.get())),
                              xcb_get_property_value_length(reply.get()))
                 : QByteArray();
}

void setWindowType(const Connection &connection, xcb_window_t window, AtomName type)
{
    const xcb_atom_t value = connection.atom(type);
    setProperty(connection, window, connection.atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM, 32, 1,
                &value);
}

void describeWindow(const Connection &connection, xcb_window_t window, const QString &title,
                    AtomName type)
{
    const auto set = [&](xcb_atom_t property, xcb_atom_t kind, std::uint8_t format,
                         std::size_t length, const void *data) {
        setProperty(connection, window, property, kind, format, length, data);
    };
    const auto setText = [&](xcb_atom_t property, xcb_atom_t kind, const QByteArray &text) {
        set(property, kind, 8, std::size_t(text.size()), text.constData());
    };
    setText(XCB_ATOM_WM_NAME, XCB_ATOM_STRING, title.toLatin1());
    setText(connection.atom("_NET_WM_NAME"), connection.atom("UTF8_STRING"), title.toUtf8());
    set(XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8, resourceClass.size(), resourceClass.data());
    setWindowType(connection, window, type);
    // EWMH: _NET_WM_PID is only valid together with WM_CLIENT_MACHINE.
    setText(XCB_ATOM_WM_CLIENT_MACHINE, XCB_ATOM_STRING, QSysInfo::machineHostName().toLatin1());
    const auto pid = static_cast<std::uint32_t>(QCoreApplication::applicationPid());
    set(connection.atom("_NET_WM_PID"), XCB_ATOM_CARDINAL, 32, 1, &pid);
}

void describeOverlay(const Connection &connection, xcb_window_t window, const QString &title,
                     AtomName type)
{
    describeWindow(connection, window, title, type);
    // ICCCM 4.1.2.4: the flag InputHint, and no input.
    const std::array<std::uint32_t, 9> hints{1};
    setProperty(connection, window, XCB_ATOM_WM_HINTS, XCB_ATOM_WM_HINTS, 32, hints.size(),
                hints.data());
    // picom uses the first property, mutter the second, which says that the window draws its own
    // shadow, with zero width.
    const std::array<std::uint32_t, 4> none{};
    setProperty(connection, window, connection.atom("_COMPTON_SHADOW"), XCB_ATOM_CARDINAL, 32, 1,
                none.data());
    setProperty(connection, window, connection.atom("_GTK_FRAME_EXTENTS"), XCB_ATOM_CARDINAL, 32,
                none.size(), none.data());
}

} // namespace glimmerpane::x11
