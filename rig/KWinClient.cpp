// SPDX-License-Identifier: MIT
#include "rig/KWinClient.h"

#include "rig/Result.h"

#include <fake-input-client-protocol.h>
#include <plasma-window-management-client-protocol.h>
#include <wayland-client.h>
#include <zkde-screencast-unstable-v1-client-protocol.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <linux/input-event-codes.h>
#include <list>
#include <string_view>
#include <utility>
#include <vector>

namespace glimmerpane::testing
{

namespace
{

using Arguments = const wl_argument *;

/** Calls `data`, a handler, with each event of an object: KWin has dozens that do not matter. */
template<typename Handler>
int dispatch(const void * /*implementation*/, void *target, std::uint32_t /*opcode*/,
             const wl_message *message, wl_argument *arguments)
{
    (*static_cast<Handler *>(wl_proxy_get_user_data(static_cast<wl_proxy *>(target))))(
        std::string_view(message->name), Arguments(arguments));
    return 0;
}

} // namespace

bool KWinClient::Window::isOffered() const
{
    constexpr std::uint32_t skipped = ORG_KDE_PLASMA_WINDOW_MANAGEMENT_STATE_SKIPTASKBAR
        | ORG_KDE_PLASMA_WINDOW_MANAGEMENT_STATE_SKIPSWITCHER;
    return (state & skipped) == 0;
}

struct KWinClient::Connection {
    using Handler = std::function<void(std::string_view event, Arguments arguments)>;

    wl_display *display = nullptr;
    wl_registry *registry = nullptr;
    org_kde_plasma_window_management *management = nullptr;
    zkde_screencast_unstable_v1 *screencast = nullptr;
    org_kde_kwin_fake_input *input = nullptr;
    std::vector<wl_proxy *> proxies;
    std::list<Handler> handlers; ///< at addresses that stay the same
    std::list<Window> windows;

    ~Connection()
    {
        for (wl_proxy *const proxy : proxies) {
            wl_proxy_destroy(proxy);
        }
        if (display != nullptr) {
            wl_display_disconnect(display);
        }
    }

    template<typename Proxy>
    Proxy *watch(Proxy *proxy, Handler handler)
    {
        auto *const generic = reinterpret_cast<wl_proxy *>(proxy);
        proxies.push_back(generic);
        wl_proxy_add_dispatcher(generic, dispatch<Handler>, nullptr,
                                &handlers.emplace_back(std::move(handler)));
        return proxy;
    }

    template<typename Proxy>
    void bind(
        Proxy *&proxy, const wl_interface &wanted, std::uint32_t version, Arguments global,
        Handler handler = [](std::string_view, Arguments) { })
    {
        if (std::strcmp(global[1].s, wanted.name) == 0) {
            proxy = watch(
                static_cast<Proxy *>(wl_registry_bind(registry, global[0].u, &wanted, version)),
                std::move(handler));
        }
    }

    void announce(Arguments global)
    {
        bind(screencast, zkde_screencast_unstable_v1_interface, 3, global);
        bind(input, org_kde_kwin_fake_input_interface, 4, global);
        bind(management, org_kde_plasma_window_management_interface, 16, global,
             [this](std::string_view event, Arguments arguments) {
                 if (event == "window_with_uuid") {
                     addWindow(arguments[1].s);
                 }
             });
    }

    void addWindow(const char *id)
    {
        Window &window = windows.emplace_back();
        window.id = QString::fromUtf8(id);
        watch(org_kde_plasma_window_management_get_window_by_uuid(management, id),
              [&window](std::string_view event, Arguments arguments) {
                  if (event == "title_changed") {
                      window.title = QString::fromUtf8(arguments[0].s);
                  } else if (event == "state_changed") {
                      window.state = arguments[0].u;
                  } else if (event == "geometry") {
                      window.geometry
                          = {arguments[0].i, arguments[1].i, static_cast<int>(arguments[2].u),
                             static_cast<int>(arguments[3].u)};
                  } else if (event == "unmapped") {
                      window.title.clear();
                  }
              });
    }
};

KWinClient::KWinClient(const QString &socket)
    : connection_(std::make_unique<Connection>())
{
    Connection &connection = *connection_;
    connection.display = wl_display_connect(qPrintable(socket));
    require(connection.display != nullptr, "KWin accepts no clients");
    connection.registry = connection.watch(wl_display_get_registry(connection.display),
                                           [this](std::string_view event, Arguments arguments) {
                                               if (event == "global") {
                                                   connection_->announce(arguments);
                                               }
                                           });
    wl_display_roundtrip(connection.display);
    require(connection.management != nullptr && connection.screencast != nullptr
                && connection.input != nullptr,
            "KWin offers no windows, recordings or input");
    org_kde_kwin_fake_input_authenticate(connection.input, "test", "test");
    wl_display_roundtrip(connection.display);
}

KWinClient::~KWinClient() = default;

std::optional<KWinClient::Window> KWinClient::window(const QString &title) const
{
    wl_display_roundtrip(connection_->display); // new windows
    wl_display_roundtrip(connection_->display); // what they are
    const auto found = std::ranges::find(connection_->windows, title, &Window::title);
    return found == connection_->windows.end() ? std::nullopt : std::optional(*found);
}

uint KWinClient::record(const Window &window) const
{
    std::optional<uint> node;
    QString problem;
    connection_->watch(
        zkde_screencast_unstable_v1_stream_window(connection_->screencast, qPrintable(window.id),
                                                  ZKDE_SCREENCAST_UNSTABLE_V1_POINTER_HIDDEN),
        [&, isAnswered = false](std::string_view event, Arguments arguments) mutable {
            if (std::exchange(isAnswered, true)) {
                return; // it has closed
            }
            if (event == "created") {
                node = arguments[0].u;
            } else {
                problem = event == "failed" ? QString::fromUtf8(arguments[0].s)
                                            : QStringLiteral("it closed");
            }
        });
    while (!node && problem.isEmpty() && wl_display_dispatch(connection_->display) >= 0) { }
    if (!node) {
        throw Failure(QStringLiteral("KWin does not record the window: ") + problem);
    }
    return *node;
}

void KWinClient::moveTo(QPoint place) const
{
    org_kde_kwin_fake_input_pointer_motion_absolute(
        connection_->input, wl_fixed_from_int(place.x()), wl_fixed_from_int(place.y()));
    wl_display_roundtrip(connection_->display);
}

void KWinClient::button(bool isPressed) const
{
    org_kde_kwin_fake_input_button(connection_->input, BTN_LEFT, isPressed ? 1 : 0);
    wl_display_roundtrip(connection_->display);
}

} // namespace glimmerpane::testing
