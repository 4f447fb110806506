// SPDX-License-Identifier: MIT
#include "platform/x11/Connection.h"

#include "platform/Log.h"

#include <xcb/composite.h>
#include <xcb/damage.h>
#include <xcb/randr.h>
#include <xcb/render.h>
#include <xcb/xfixes.h>
#include <xcb/xinput.h>

#include <array>
#include <sys/socket.h>
#include <utility>

namespace glimmerpane::x11
{

namespace
{

struct Version {
    std::uint32_t major = 0;
    std::uint32_t minor = 0;

    friend auto operator<=>(const Version &, const Version &) = default;
};

struct Requirement {
    xcb_extension_t *extension;
    const char *name;
    Version needed;
    Version (*announce)(xcb_connection_t *, Version); ///< returns the server's version
};

// The version requests of all extensions are alike, but differ in type.
template<auto send, auto receive>
Version announce(xcb_connection_t *connection, Version needed)
{
    using Major = decltype(receive(connection, {}, nullptr)->major_version);
    const auto cookie
        = send(connection, static_cast<Major>(needed.major), static_cast<Major>(needed.minor));
    const Reply<std::remove_pointer_t<decltype(receive(connection, cookie, nullptr))>> reply(
        receive(connection, cookie, nullptr));
    return reply ? Version{reply->major_version, reply->minor_version} : Version{};
}

// Regions need Damage 1.1 and XFixes 2, monitors RandR 1.5. Raw events during other clients' grabs
// are only sent to clients that announced XInput 2.1 (XI2proto, "Changes in version 2.1").
const std::array requirements{
    Requirement{&xcb_xfixes_id,
                "XFIXES",
                {4, 0},
                announce<xcb_xfixes_query_version, xcb_xfixes_query_version_reply>},
    Requirement{&xcb_damage_id,
                "DAMAGE",
                {1, 1},
                announce<xcb_damage_query_version, xcb_damage_query_version_reply>},
    Requirement{&xcb_composite_id,
                "Composite",
                {0, 2},
                announce<xcb_composite_query_version, xcb_composite_query_version_reply>},
    Requirement{&xcb_render_id,
                "RENDER",
                {0, 10},
                announce<xcb_render_query_version, xcb_render_query_version_reply>},
    Requirement{&xcb_randr_id,
                "RANDR",
                {1, 5},
                announce<xcb_randr_query_version, xcb_randr_query_version_reply>},
    Requirement{&xcb_input_id,
                "XInputExtension",
                {2, 2},
                announce<xcb_input_xi_query_version, xcb_input_xi_query_version_reply>},
};

std::uint8_t firstEvent(const Connection &connection, xcb_extension_t &extension)
{
    return xcb_get_extension_data(connection.get(), &extension)->first_event;
}

} // namespace

std::expected<Connection, Error> Connection::open(const QByteArray &display)
{
    int screenNumber = 0;
    Handle connection(xcb_connect(display.constData(), &screenNumber));
    if (const int code = xcb_connection_has_error(connection.get())) {
        return std::unexpected(
            Error{.text = Error::tr("Cannot connect to an X server (DISPLAY is \"%1\"). "
                                    "Start Glimmerpane in an X11 session.")
                              .arg(QString::fromLocal8Bit(display)),
                  .log = QStringLiteral("xcb_connect failed with code %1").arg(code)});
    }
    return Connection(std::move(connection), screenNumber);
}

Connection::Connection(Handle connection, int screenNumber)
    : connection_(std::move(connection))
    , atoms_(get(), screenNumber)
{
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(get()));
    for (int i = 0; i < screenNumber; ++i) {
        xcb_screen_next(&screens);
    }
    screen_ = screens.data;
    const xcb_setup_t &setup = *xcb_get_setup(get());
    qCDebug(platformLog, "X server: %.*s, release %u", xcb_setup_vendor_length(&setup),
            xcb_setup_vendor(&setup), setup.release_number);
}

bool Connection::takesFiles() const
{
    sockaddr address{};
    socklen_t length = sizeof address;
    return getsockname(fileDescriptor(), &address, &length) == 0 && address.sa_family == AF_UNIX;
}

std::expected<void, Error> Connection::check(xcb_void_cookie_t request, const char *name) const
{
    const Reply<xcb_generic_error_t> error(xcb_request_check(get(), request));
    if (!error) {
        return {};
    }
    const QString what = QString::fromLatin1(name);
    return std::unexpected(
        Error{.text = Error::tr("The X server refused a request (%1).").arg(what),
              .log = QStringLiteral("%1 failed with X error %2").arg(what).arg(error->error_code)});
}

std::expected<Extensions, Error> requireExtensions(const Connection &connection)
{
    for (const auto &requirement : requirements) {
        xcb_prefetch_extension_data(connection.get(), requirement.extension);
    }
    for (const auto &[extension, name, needed, announceVersion] : requirements) {
        const auto *data = xcb_get_extension_data(connection.get(), extension);
        if (data == nullptr || data->present == 0
            || announceVersion(connection.get(), needed) < needed) {
            const QString which = QStringLiteral("%1 %2.%3")
                                      .arg(QString::fromLatin1(name))
                                      .arg(needed.major)
                                      .arg(needed.minor);
            return std::unexpected(
                Error{.text = Error::tr("The X server lacks the %1 extension, or does not let this "
                                        "program use it. Enable it in the server's configuration; "
                                        "over SSH, connect with ssh -Y.")
                                  .arg(which),
                      .log = QStringLiteral("extension %1 is missing").arg(which)});
        }
    }
    return Extensions{.firstDamageEvent = firstEvent(connection, xcb_damage_id),
                      .firstXFixesEvent = firstEvent(connection, xcb_xfixes_id),
                      .firstRandrEvent = firstEvent(connection, xcb_randr_id),
                      .xinputOpcode
                      = xcb_get_extension_data(connection.get(), &xcb_input_id)->major_opcode};
}

std::expected<ExtendedConnection, Error> openExtended()
{
    auto connection = Connection::open();
    if (!connection) {
        return std::unexpected(connection.error());
    }
    const auto extensions = requireExtensions(*connection);
    if (!extensions) {
        return std::unexpected(extensions.error());
    }
    return ExtendedConnection{.connection = std::move(*connection), .extensions = *extensions};
}

} // namespace glimmerpane::x11
