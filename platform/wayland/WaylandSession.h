// SPDX-License-Identifier: MIT
#pragma once

#include "platform/wayland/WaylandObject.h"
#include "services/Error.h"

#include <QByteArray>
#include <QRect>
#include <QSize>
#include <QString>

#include <algorithm>
#include <chrono>
#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace glimmerpane::wayland
{

/** An output as its clients see it. */
struct OutputState {
    QString name; ///< such as "DP-1"
    QRect logical; ///< where it is in the desktop, in the unit of window positions
    QSize pixels; ///< of its mode, so before `transform`
    std::int32_t transform = WL_OUTPUT_TRANSFORM_NORMAL;

    friend bool operator==(const OutputState &, const OutputState &) = default;
};

class WaylandSession;

/** One announced output. Its address stays the same. */
struct Output {
    WaylandSession *session = nullptr;
    std::uint32_t global = 0; ///< its number in the registry
    WaylandObject<wl_output> proxy;
    WaylandObject<zxdg_output_v1> description;
    OutputState state; ///< since the last complete description
    OutputState incoming;
};

/** A connection to the compositor, what it offers and its outputs. Used by one thread. */
class WaylandSession
{
public:
    /** Connects to the compositor that $WAYLAND_DISPLAY names and waits for what it announces. */
    static std::expected<std::unique_ptr<WaylandSession>, Error> open();

    WaylandSession(const WaylandSession &) = delete;
    WaylandSession &operator=(const WaylandSession &) = delete;
    ~WaylandSession() = default;

    /** A global object in this version; null if the compositor does not offer it. */
    template<typename Proxy>
    WaylandObject<Proxy> bind(const wl_interface &wanted, std::uint32_t version) const
    {
        const auto found = std::ranges::find(globals_, QByteArray(wanted.name), &Global::interface);
        return found == globals_.end() ? nullptr : bind<Proxy>(*found, wanted, version);
    }

    /** Those that have been described completely, in the order of their announcement. */
    std::vector<const Output *> outputs() const;

    /** Called when an output has come, gone or changed. */
    std::function<void()> onOutputsChanged;

    /**
     * Sends what is pending, then handles events; if there are none, waits until some arrive,
     * `other` becomes readable or the time is over. False if the connection is lost.
     */
    bool wait(int other, std::optional<std::chrono::nanoseconds> limit);

    /** Readable when there are events to handle. */
    int fileDescriptor() const { return wl_display_get_fd(display_.get()); }

private:
    struct Listeners;
    struct Global {
        std::uint32_t name = 0; ///< its number in the registry
        QByteArray interface;
        std::uint32_t version = 0;
    };

    explicit WaylandSession(wl_display *display);
    template<typename Proxy>
    WaylandObject<Proxy> bind(const Global &global, const wl_interface &wanted,
                              std::uint32_t version) const
    {
        return WaylandObject<Proxy>(global.version < version
                                        ? nullptr
                                        : static_cast<Proxy *>(wl_registry_bind(
                                              registry_.get(), global.name, &wanted, version)));
    }
    void add(const Global &global);
    void describe(Output &output);
    void remove(std::uint32_t name);
    void outputsChanged() const;

    WaylandObject<wl_display> display_; // destroyed last
    WaylandObject<wl_registry> registry_;
    std::vector<Global> globals_;
    WaylandObject<zxdg_output_manager_v1> descriptions_;
    std::vector<std::unique_ptr<Output>> outputs_;
};

} // namespace glimmerpane::wayland
