// SPDX-License-Identifier: MIT
#pragma once

#include "platform/wlroots/WaylandObject.h"
#include "services/Error.h"

#include <QRect>
#include <QSize>
#include <QString>

#include <chrono>
#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace glimmerpane::wlroots
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

/** A connection to the compositor and what capturing needs of it. Used by one thread. */
class WaylandSession
{
public:
    /**
     * Connects to the compositor that $WAYLAND_DISPLAY names and waits for what it announces. Fails
     * if it does not let its clients copy the screen.
     */
    static std::expected<std::unique_ptr<WaylandSession>, Error> open();

    WaylandSession(const WaylandSession &) = delete;
    WaylandSession &operator=(const WaylandSession &) = delete;
    ~WaylandSession() = default;

    zwlr_screencopy_manager_v1 *screencopy() const { return screencopy_.get(); }
    wl_shm *sharedMemory() const { return sharedMemory_.get(); }

    /** Those that have been described completely, in the order of their announcement. */
    std::vector<const Output *> outputs() const;

    /** Called when an output has come, gone or changed. */
    std::function<void()> onOutputsChanged;

    /**
     * Sends what is pending, then handles events; if there are none, waits until some arrive,
     * `other` becomes readable or the time is over. False if the connection is lost.
     */
    bool wait(int other, std::optional<std::chrono::nanoseconds> limit);

private:
    struct Listeners;

    explicit WaylandSession(wl_display *display);
    void bind(std::uint32_t name, const char *interface, std::uint32_t version);
    void describe(Output &output);
    void remove(std::uint32_t name);
    void outputsChanged() const;

    WaylandObject<wl_display> display_; // destroyed last
    WaylandObject<wl_registry> registry_;
    WaylandObject<zwlr_screencopy_manager_v1> screencopy_;
    WaylandObject<zxdg_output_manager_v1> descriptions_;
    WaylandObject<wl_shm> sharedMemory_;
    std::vector<std::unique_ptr<Output>> outputs_;
};

} // namespace glimmerpane::wlroots
