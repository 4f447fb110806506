// SPDX-License-Identifier: MIT
#include "platform/wayland/WaylandSession.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <poll.h>

namespace glimmerpane::wayland
{

namespace
{

// These describe an output in one step.
constexpr std::uint32_t outputVersion = 4;
constexpr std::uint32_t descriptionVersion = 3;

timespec toTimespec(std::chrono::nanoseconds time)
{
    const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
    return {.tv_sec = seconds.count(), .tv_nsec = (time - seconds).count()};
}

} // namespace

/** The compositor's events; `data` is what add_listener() was given. */
struct WaylandSession::Listeners {
    static Output &of(void *data) { return *static_cast<Output *>(data); }

    static constexpr wl_registry_listener registry{
        .global =
            [](void *data, wl_registry *, std::uint32_t name, const char *interface,
               std::uint32_t version) {
                static_cast<WaylandSession *>(data)->add(
                    {.name = name, .interface = interface, .version = version});
            },
        .global_remove
        = [](void *data, wl_registry *,
             std::uint32_t name) { static_cast<WaylandSession *>(data)->remove(name); }};

    static constexpr wl_output_listener output{
        .geometry = [](void *data, wl_output *, std::int32_t, std::int32_t, std::int32_t,
                       std::int32_t, std::int32_t, const char *, const char *,
                       std::int32_t transform) { of(data).incoming.transform = transform; },
        .mode =
            [](void *data, wl_output *, std::uint32_t flags, std::int32_t width,
               std::int32_t height, std::int32_t) {
                if ((flags & WL_OUTPUT_MODE_CURRENT) != 0) {
                    of(data).incoming.pixels = {width, height};
                }
            },
        .done =
            [](void *data, wl_output *) {
                auto &output = of(data);
                if (output.incoming != output.state) {
                    output.state = output.incoming;
                    output.session->outputsChanged();
                }
            },
        .scale = [](void *, wl_output *, std::int32_t) {},
        .name = [](void *data, wl_output *,
                   const char *name) { of(data).incoming.name = QString::fromUtf8(name); },
        .description = [](void *, wl_output *, const char *) {}};

    static constexpr zxdg_output_v1_listener description{
        .logical_position = [](void *data, zxdg_output_v1 *, std::int32_t x,
                               std::int32_t y) { of(data).incoming.logical.moveTo(x, y); },
        .logical_size
        = [](void *data, zxdg_output_v1 *, std::int32_t width,
             std::int32_t height) { of(data).incoming.logical.setSize({width, height}); },
        .done = [](void *, zxdg_output_v1 *) {}, // wl_output's event takes its place
        .name = [](void *, zxdg_output_v1 *, const char *) {},
        .description = [](void *, zxdg_output_v1 *, const char *) {}};
};

std::expected<std::unique_ptr<WaylandSession>, Error> WaylandSession::open()
{
    wl_display *const display = wl_display_connect(nullptr);
    if (display == nullptr) {
        return std::unexpected(
            Error{.text = Error::tr("Cannot connect to the Wayland compositor "
                                    "(WAYLAND_DISPLAY is \"%1\").")
                              .arg(qEnvironmentVariable("WAYLAND_DISPLAY")),
                  .log = QStringLiteral("wl_display_connect: %1").arg(qt_error_string(errno))});
    }
    std::unique_ptr<WaylandSession> session(new WaylandSession(display));
    // The first one for the registry's globals, the second for what these say of themselves.
    wl_display_roundtrip(display);
    session->descriptions_ = session->bind<zxdg_output_manager_v1>(zxdg_output_manager_v1_interface,
                                                                   descriptionVersion);
    for (const auto &output : session->outputs_) {
        session->describe(*output);
    }
    wl_display_roundtrip(display);
    return session;
}

WaylandSession::WaylandSession(wl_display *display)
    : display_(display)
    , registry_(wl_display_get_registry(display))
{
    wl_registry_add_listener(registry_.get(), &Listeners::registry, this);
}

void WaylandSession::add(const Global &global)
{
    globals_.push_back(global);
    if (global.interface == wl_output_interface.name && global.version >= outputVersion) {
        auto output = std::make_unique<Output>();
        output->proxy = bind<wl_output>(global, wl_output_interface, outputVersion);
        output->session = this;
        output->global = global.name;
        wl_output_add_listener(output->proxy.get(), &Listeners::output, output.get());
        describe(*output);
        outputs_.push_back(std::move(output));
    }
}

/** Asks for its place in the desktop, once. */
void WaylandSession::describe(Output &output)
{
    if (descriptions_ && !output.description) {
        output.description.reset(
            zxdg_output_manager_v1_get_xdg_output(descriptions_.get(), output.proxy.get()));
        zxdg_output_v1_add_listener(output.description.get(), &Listeners::description, &output);
    }
}

void WaylandSession::remove(std::uint32_t name)
{
    std::erase_if(globals_, [name](const Global &global) { return global.name == name; });
    const auto isIt = [name](const auto &output) { return output->global == name; };
    const auto gone = std::ranges::find_if(outputs_, isIt);
    if (gone != outputs_.end()) {
        const auto last = std::move(*gone); // what is told may still use it
        outputs_.erase(gone);
        outputsChanged();
    }
}

void WaylandSession::outputsChanged() const
{
    if (onOutputsChanged) {
        onOutputsChanged();
    }
}

std::vector<const Output *> WaylandSession::outputs() const
{
    std::vector<const Output *> described;
    for (const auto &output : outputs_) {
        if (!output->state.logical.isEmpty() && !output->state.pixels.isEmpty()) {
            described.push_back(output.get());
        }
    }
    return described;
}

bool WaylandSession::wait(int other, std::optional<std::chrono::nanoseconds> limit)
{
    wl_display *const display = display_.get();
    if (wl_display_prepare_read(display) != 0) {
        return wl_display_dispatch_pending(display) >= 0;
    }
    wl_display_flush(display);
    std::array files{pollfd{.fd = wl_display_get_fd(display), .events = POLLIN, .revents = 0},
                     pollfd{.fd = other, .events = POLLIN, .revents = 0}};
    const timespec time = toTimespec(limit.value_or(std::chrono::nanoseconds::zero()));
    if (ppoll(files.data(), files.size(), limit ? &time : nullptr, nullptr) > 0
        && files[0].revents != 0) {
        if (wl_display_read_events(display) < 0) {
            return false;
        }
    } else {
        wl_display_cancel_read(display);
    }
    return wl_display_dispatch_pending(display) >= 0;
}

} // namespace glimmerpane::wayland
