// SPDX-License-Identifier: MIT
#include "platform/x11/ScreenSourceX11.h"

#include "platform/x11/CaptureStreamX11.h"
#include "platform/x11/Connection.h"
#include "platform/x11/Monitors.h"
#include "platform/x11/Xwayland.h"

#include <QCoroFuture>
#include <QtConcurrent>

namespace glimmerpane::x11
{

namespace
{

using Content = std::expected<ShareableContent, Error>;

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
                         .arg(refusal ? refusal->error_code : 0),
              .outcome = Outcome::unavailable});
}

Content askServer()
{
    const auto opened = openExtended();
    if (!opened) {
        return std::unexpected(opened.error());
    }
    const Connection &connection = opened->connection;
    ShareableContent content{.displays = monitors(connection)};
    if (isXwayland(connection)) {
        return std::unexpected(
            Error{.text = Error::tr("This is a Wayland session, in which X11 programs cannot read "
                                    "the screen. Log in to an X11 session instead."),
                  .log = QStringLiteral("the X server is Xwayland"),
                  .outcome = Outcome::unavailable});
    }
    if (auto readable = readOnePixel(connection); !readable) {
        return std::unexpected(readable.error());
    }
    return content;
}

} // namespace

QCoro::Task<Content> ScreenSourceX11::shareableContent(Rect /*area*/)
{
    auto request = QtConcurrent::run(background_.get(), askServer);
    co_return co_await request;
}

std::unique_ptr<CaptureStream> ScreenSourceX11::makeCaptureStream(
    const ContentFilter &filter, const StreamConfiguration &configuration)
{
    return std::make_unique<CaptureStreamX11>(filter, configuration, background_);
}

} // namespace glimmerpane::x11
