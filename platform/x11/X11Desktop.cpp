// SPDX-License-Identifier: MIT
#include "platform/x11/X11Desktop.h"

#include "platform/Notification.h"
#include "platform/SettingsProgram.h"
#include "platform/x11/CaptureStreamX11.h"
#include "platform/x11/Connection.h"
#include "platform/x11/DisplayLayerX11.h"
#include "platform/x11/ManagedWindowX11.h"
#include "platform/x11/ManagerMessages.h"
#include "platform/x11/Monitors.h"
#include "platform/x11/OffscreenWindowX11.h"
#include "platform/x11/OverlayWindowX11.h"
#include "platform/x11/PressMonitorX11.h"
#include "platform/x11/WindowShape.h"

#include <QDesktopServices>
#include <QGuiApplication>
#include <QProcess>
#include <QScreen>

#include <string_view>
#include <utility>

namespace glimmerpane::x11
{

namespace
{

/** Fails if this client may not read the screen. */
std::expected<void, Error> readOnePixel(const Connection &connection)
{
    xcb_generic_error_t *error = nullptr;
    const auto cookie = xcb_get_image(connection.get(), XCB_IMAGE_FORMAT_Z_PIXMAP,
                                      connection.root(), 0, 0, 1, 1, ~std::uint32_t{});
    const Reply<xcb_get_image_reply_t> reply(xcb_get_image_reply(connection.get(), cookie, &error));
    const Reply<xcb_generic_error_t> refusal(error);
    if (reply) {
        return {};
    }
    return std::unexpected(
        Error{.text = Error::tr("The X server does not let this program read the screen. Over SSH, "
                                "connect with ssh -Y."),
              .log = QStringLiteral("GetImage of the root failed with X error %1")
                         .arg(refusal ? refusal->error_code : 0)});
}

/** Xwayland has the extension XWAYLAND, or outputs of that name. */
bool isXwayland(const Connection &connection, const std::vector<Display> &displays)
{
    constexpr std::string_view name = "XWAYLAND";
    const auto cookie = xcb_query_extension(connection.get(), name.size(), name.data());
    const Reply<xcb_query_extension_reply_t> reply(
        xcb_query_extension_reply(connection.get(), cookie, nullptr));
    return (reply && reply->present != 0)
        || (!displays.empty() && displays.front().name.startsWith(QLatin1String(name)));
}

} // namespace

std::expected<void, Error> checkDisplay()
{
    if (auto connection = Connection::open(); !connection) {
        return std::unexpected(connection.error());
    }
    return {};
}

X11Desktop::X11Desktop(OffscreenWindowKind kind)
    : offscreenWindowKind_(kind)
{
}

double X11Desktop::scaleFactor() const
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    return screen != nullptr ? screen->devicePixelRatio() : 1;
}

std::vector<glimmerpane::Display> X11Desktop::displays() const
{
    const auto connection = Connection::open();
    return connection ? monitors(*connection) : std::vector<glimmerpane::Display>();
}

std::expected<ShareableContent, Error> X11Desktop::shareableContent() const
{
    const auto opened = openExtended();
    if (!opened) {
        return std::unexpected(opened.error());
    }
    const Connection &connection = opened->connection;
    ShareableContent content{.displays = monitors(connection)};
    if (isXwayland(connection, content.displays)) {
        return std::unexpected(
            Error{.text = Error::tr("This is a Wayland session, in which X11 programs cannot read "
                                    "the screen. Log in to an X11 session instead."),
                  .log = QStringLiteral("the X server is Xwayland")});
    }
    if (auto readable = readOnePixel(connection); !readable) {
        return std::unexpected(readable.error());
    }
    return content;
}

void X11Desktop::activateWindow(std::uint32_t window, const QString &startupId)
{
    const auto connection = Connection::open();
    if (!connection) {
        return;
    }
    // A program's own request may be refused; a direct user action (EWMH's source indication 2) is
    // not.
    sendToManager(*connection, window, "_NET_ACTIVE_WINDOW", {2, XCB_CURRENT_TIME});
    if (!startupId.isEmpty()) {
        endStartupNotification(*connection, startupId.toUtf8());
    }
    connection->flush();
}

void X11Desktop::setShape(std::uint32_t window, const QRegion &pixels)
{
    setWindowShape(window, pixels);
}

bool X11Desktop::openPrivacySettings()
{
    const auto program = settingsProgram(qEnvironmentVariable("XDG_CURRENT_DESKTOP"));
    return program && QProcess::startDetached(*program, {});
}

void X11Desktop::notify(const QString &title, const QString &text)
{
    sendNotification(title, text);
}

void X11Desktop::openUrl(const QUrl &url)
{
    QDesktopServices::openUrl(url);
}

std::expected<std::unique_ptr<OffscreenWindow>, Error> X11Desktop::makeOffscreenWindow(
    const QString &title, QPoint origin, QSize size)
{
    return offscreenWindowKind_ == OffscreenWindowKind::Managed
        ? ManagedWindowX11::create(title, origin, size)
        : OffscreenWindowX11::create(title, origin, size);
}

std::expected<std::unique_ptr<OverlayWindow>, Error> X11Desktop::makeOverlayWindow(
    const QString &title, QRect area, const FrostedGlass &glass)
{
    return OverlayWindowX11::create(title, area, glass);
}

std::expected<std::unique_ptr<DisplayLayer>, Error> X11Desktop::makeDisplayLayer(
    const OffscreenWindow &window)
{
    return DisplayLayerX11::create(window.id(), window.size());
}

std::unique_ptr<PressMonitor> X11Desktop::monitorPresses(std::function<void(QPoint)> pressed)
{
    return PressMonitorX11::create(std::move(pressed));
}

std::unique_ptr<CaptureStream> X11Desktop::makeCaptureStream(
    const ContentFilter &filter, const StreamConfiguration &configuration)
{
    return std::make_unique<CaptureStreamX11>(filter, configuration);
}

} // namespace glimmerpane::x11
