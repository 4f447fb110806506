// SPDX-License-Identifier: MIT
#include "platform/x11/IconicWindowX11.h"

#include "platform/Log.h"
#include "platform/x11/Compositing.h"
#include "platform/x11/Events.h"
#include "platform/x11/ManagerHints.h"
#include "platform/x11/ManagerMessages.h"
#include "platform/x11/Regions.h"
#include "platform/x11/Render.h"
#include "platform/x11/WindowProperties.h"

#include <xcb/xfixes.h>

#include <array>
#include <cstdint>
#include <utility>

namespace glimmerpane::x11
{

namespace
{

// ICCCM 4.1.3.1
constexpr std::uint32_t normalState = 1;
constexpr std::uint32_t iconicState = 3;

} // namespace

std::expected<std::unique_ptr<OutputWindow>, Error> IconicWindowX11::create(const QString &title,
                                                                            QSize size,
                                                                            ViewerWatcher watcher)
{
    auto opened = openExtended();
    if (!opened) {
        return std::unexpected(opened.error());
    }
    auto window = std::make_unique<IconicWindowX11>(std::move(*opened), size, std::move(watcher));
    if (auto created = window->createWindow({0, 0}, true); !created) {
        return std::unexpected(created.error());
    }
    window->describe(title);
    setManagerHints(window->connection_, window->window_.get(),
                    {.size = size, .isIconic = true, .place = {}, .states = {}});
    window->createDot();
    return window;
}

IconicWindowX11::IconicWindowX11(ExtendedConnection opened, QSize size, ViewerWatcher watcher)
    : OffscreenWindowX11(std::move(opened), size)
    , watcher_(std::move(watcher))
{
}

void IconicWindowX11::createDot()
{
    const auto &screen = connection_.screen();
    const xcb_visualid_t visual = translucentVisual(screen);
    const auto colormap = connection_.newId();
    xcb_create_colormap(connection_.get(), XCB_COLORMAP_ALLOC_NONE, colormap, screen.root, visual);
    colormap_ = Colormap(connection_, colormap);
    const auto dot = connection_.newId();
    const std::array<std::uint32_t, 4> values{0, 0, 1, colormap};
    xcb_create_window(connection_.get(), 32, dot, screen.root, 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, visual,
                      XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT
                          | XCB_CW_COLORMAP,
                      values.data());
    dot_ = Window(connection_, dot);
    xcb_xfixes_set_window_shape_region(connection_.get(), dot, XCB_SHAPE_SK_INPUT, 0, 0,
                                       makeRegion(connection_.get()).get());
}

void IconicWindowX11::orderFront()
{
    const auto mapped = xcb_map_window_checked(connection_.get(), window_.get());
    // mutter 43 lets a map request outweigh the iconic state in the hints. It handles this message
    // before it would show the window.
    minimise();
    isVisible_ = connection_.check(mapped, "MapWindow").has_value();
    xcb_map_window(connection_.get(), dot_.get());
    events_.flush();
    // Even what is drawn was at times not enough (4 of 160 viewers) until the shell had to paint
    // the screen.
    touchForViewers(watcher_,
                    [this] { xcb_clear_area(connection_.get(), 0, dot_.get(), 0, 0, 1, 1); });
}

void IconicWindowX11::orderOut()
{
    stopTouching();
    isVisible_ = false;
    stage_ = Stage::New;
    xcb_unmap_window(connection_.get(), dot_.get());
    withdraw(connection_, window_.get());
    events_.flush();
}

void IconicWindowX11::minimise()
{
    sendToManager(connection_, window_.get(), "WM_CHANGE_STATE", {iconicState}); // ICCCM 4.1.4
}

/** The shell has changed WM_STATE (ICCCM 4.1.3.1): it shows the window, or does so no more. */
void IconicWindowX11::follow(std::uint32_t state)
{
    if (!isVisible_) {
        return;
    }
    if (state == normalState) {
        stage_ = stage_ == Stage::New ? Stage::New : Stage::Activated;
        minimise();
        events_.flush();
    } else if (std::exchange(stage_, Stage::Minimised) == Stage::Activated) {
        qCInfo(platformLog, "the user has activated the output window");
        if (onActivated) {
            onActivated();
        }
    }
}

void IconicWindowX11::handle(const xcb_generic_event_t &event)
{
    const xcb_atom_t wmState = connection_.atom("WM_STATE");
    if (typeOf(event) != XCB_PROPERTY_NOTIFY
        || eventAs<xcb_property_notify_event_t>(event).atom != wmState) {
        OffscreenWindowX11::handle(event);
        return;
    }
    events_.await<xcb_get_property_reply_t>(
        xcb_get_property(connection_.get(), 0, window_.get(), wmState, wmState, 0, 1),
        [this](const Reply<xcb_get_property_reply_t> &reply) {
            if (reply && xcb_get_property_value_length(reply.get()) > 0) {
                follow(*static_cast<std::uint32_t *>(xcb_get_property_value(reply.get())));
            }
        });
    events_.flush();
}

} // namespace glimmerpane::x11
