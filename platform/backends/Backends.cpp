// SPDX-License-Identifier: MIT
#include "platform/backends/Backends.h"

#include "platform/gnome/GnomeRecording.h"
#include "platform/gnome/GnomeScreenSource.h"
#include "platform/x11/DisplayName.h"
#include "platform/x11/X11Backend.h"

#include <algorithm>
#include <array>
#include <functional>

namespace glimmerpane
{

namespace
{

/** One way to share; the first whose probe succeeds is chosen. */
struct Candidate {
    const char *name;
    bool (*isUsable)();
    Backend (*make)(const BackendRequest &request);
};

bool isWaylandSession()
{
    return !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

/**
 * A Wayland session's: windows are shown through Xwayland, while the picture comes from elsewhere.
 * Xwayland reports only presses over its own windows, so there are none.
 */
Backend makeWaylandBackend(
    const QString &name, const BackendRequest &request,
    const std::function<std::shared_ptr<ScreenSource>(const std::shared_ptr<Displays> &displays)>
        &makeScreen)
{
    Backend backend = x11::makeBackend(request.listsOutput);
    backend.name = name;
    backend.screen = makeScreen(backend.displays);
    backend.presses = nullptr;
    return backend;
}

Backend makeGnomeBackend(const BackendRequest &request)
{
    return makeWaylandBackend(QStringLiteral("gnome"), request, [](const auto &displays) {
        return std::make_shared<gnome::GnomeScreenSource>(displays);
    });
}

constexpr std::array candidates{
    Candidate{.name = "gnome",
              .isUsable = [] { return isWaylandSession() && gnome::isScreenCastThere(); },
              .make = makeGnomeBackend},
    Candidate{
        .name = "x11",
        .isUsable = [] { return true; },
        .make
        = [](const BackendRequest &request) { return x11::makeBackend(request.listsOutput); }},
};

} // namespace

QStringList backendNames()
{
    QStringList names;
    for (const Candidate &candidate : candidates) {
        names.append(QLatin1String(candidate.name));
    }
    return names;
}

std::expected<void, Error> prepareDesktop()
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "xcb");
    }
    return x11::checkDisplay();
}

QString displayName()
{
    return qEnvironmentVariable("DISPLAY");
}

bool isSameDisplay(const QString &one, const QString &other)
{
    return x11::isSameDisplay(one, other);
}

std::expected<Backend, Error> makeBackend(const BackendRequest &request)
{
    const auto chosen = std::ranges::find_if(candidates, [&](const Candidate &candidate) {
        return request.name.isEmpty() ? candidate.isUsable()
                                      : request.name == QLatin1String(candidate.name);
    });
    if (chosen == candidates.end()) {
        return std::unexpected(
            Error{.text = Error::tr("There is no back end '%1'. Use one of: %2.")
                              .arg(request.name, backendNames().join(QStringLiteral(", "))),
                  .log = {},
                  .outcome = Outcome::unavailable});
    }
    return chosen->make(request);
}

} // namespace glimmerpane
