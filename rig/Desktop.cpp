// SPDX-License-Identifier: MIT
#include "rig/Desktop.h"

#include "rig/WaitFor.h"
#include "rig/WindowManager.h"

#include <algorithm>
#include <thread>

namespace glimmerpane::testing
{

Desktop::Desktop(XvfbServer server, XClient client, const Options &options)
    : server_(std::move(server))
    , client_(std::move(client))
    , bus_(options.bus)
    , stop_(options.stop)
{
}

Result<std::unique_ptr<Desktop>> Desktop::start(const Options &options)
{
    auto server = XvfbServer::start({.screen = options.screen});
    if (!server) {
        return failure(server.error());
    }
    auto client = XClient::connect(server->displayName());
    if (!client) {
        return failure(client.error());
    }
    std::unique_ptr<Desktop> desktop(new Desktop(std::move(*server), std::move(*client), options));
    if (!desktop->folder_.isValid()) {
        return failure(QStringLiteral("no temporary folder"));
    }
    const auto manager = desktop->startHelpers(options.compositor);
    if (!manager) {
        return failure(manager.error());
    }
    return desktop;
}

Result<void> Desktop::startHelpers(bool compositor)
{
    auto manager = startWindowManager(
        client_, {.program = QStringLiteral("openbox"), .environment = environment()});
    if (!manager) {
        return failure(manager.error());
    }
    helpers_.push_back(std::move(*manager));
    if (!compositor) {
        return {};
    }
    auto picom = startCompositor(
        client_, {.program = QStringLiteral("picom"), .environment = environment()});
    if (!picom) {
        return failure(picom.error());
    }
    helpers_.push_back(std::move(*picom));
    return {};
}

QProcessEnvironment Desktop::environment() const
{
    auto environment = server_.environment();
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"),
                       folder_.filePath(QStringLiteral("config")));
    environment.insert(QStringLiteral("XDG_CACHE_HOME"), folder_.filePath(QStringLiteral("cache")));
    environment.insert(QStringLiteral("XDG_DATA_HOME"), folder_.filePath(QStringLiteral("data")));
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), folder_.path());
    // An address that is no address keeps programs away from the person's own session bus.
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"),
                       bus_.isEmpty() ? QStringLiteral("disabled:") : bus_);
    return environment;
}

bool Desktop::waitFor(const std::function<bool()> &condition, std::chrono::milliseconds limit) const
{
    bool held = false;
    testing::waitFor(
        [&] {
            held = condition();
            return held || stopRequested() || client_.isBroken();
        },
        limit);
    return held;
}

std::optional<double> Desktop::timeUntil(const std::function<bool()> &condition,
                                         std::chrono::steady_clock::time_point begin) const
{
    using Clock = std::chrono::steady_clock;
    const auto end = begin + std::chrono::seconds(10);
    while (Clock::now() < end && !stopRequested()) {
        if (condition()) {
            return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
        }
    }
    return std::nullopt;
}

bool Desktop::rest(std::chrono::milliseconds time) const
{
    // Rarely awake, so that it disturbs no measurement, and often enough to be stopped.
    constexpr std::chrono::nanoseconds slice = std::chrono::milliseconds(50);
    const auto end = std::chrono::steady_clock::now() + time;
    for (auto left = end - std::chrono::steady_clock::now(); left.count() > 0;
         left = end - std::chrono::steady_clock::now()) {
        if (stopRequested()) {
            return false;
        }
        std::this_thread::sleep_for(std::min<std::chrono::nanoseconds>(slice, left));
    }
    return !stopRequested();
}

} // namespace glimmerpane::testing
