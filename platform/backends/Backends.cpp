// SPDX-License-Identifier: MIT
#include "platform/backends/Backends.h"

#include "platform/Log.h"
#include "platform/backends/NoScreenSource.h"
#include "platform/gnome/GnomeRecording.h"
#include "platform/gnome/GnomeScreenSource.h"
#include "platform/gnome/Stage.h"
#include "platform/kwin/KWinScreenSource.h"
#include "platform/pipewire/FlowWatch.h"
#include "platform/portal/PortalScreenSource.h"
#include "platform/wlroots/WlrootsBackend.h"
#include "platform/x11/DisplayName.h"
#include "platform/x11/X11Backend.h"

#include <algorithm>
#include <array>

namespace glimmerpane
{

namespace
{

using Tokens = std::shared_ptr<RestoreTokenStore>;

/** One way to share; the first whose probe succeeds is chosen. */
struct Candidate {
    const char *name;
    bool (*isUsable)();
    Backend (*make)(const BackendRequest &request, const Tokens &tokens);
};

bool isWaylandSession()
{
    return !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

/**
 * The windows of a Wayland session: Xwayland shows ours. It reports only presses over X11 windows,
 * which is worse than none. The output window is one that the desktop offers to a call and keeps
 * drawing, whoever records the screen. In KWin 5.27 a fast drag out of an X11 window was lost.
 */
Backend xwaylandBackend(const BackendRequest &request)
{
    Backend backend = x11::makeBackend(request.listsOutput);
    backend.presses = nullptr;
    backend.areaDrag = AreaDrag::MovesAtEnd; // a move may start another recording
    if (gnome::isScreenCastThere()) {
        backend.outputWindows = x11::outlyingOutputWindows(
            backend.displays, pipewire::watchFlow, [displays = backend.displays](QRect area) {
                return gnome::magnification(area, boundsOf(displays->displays()));
            });
    } else if (x11::windowManager() == "KWin") {
        backend.overlays = x11::makeSpanningOverlays();
        backend.areaDrag = AreaDrag::Impossible;
        backend.outputWindows = x11::parkedOutputWindows(pipewire::watchFlow);
    }
    return backend;
}

/** Xwayland shows pictures in the graphics driver's buffers where it is, unless that is unwanted.
 */
pipewire::StreamEnvironment streamEnvironment()
{
    pipewire::StreamEnvironment environment;
    if (qEnvironmentVariable("GLIMMERPANE_DMABUF") != QLatin1String("0")) {
        environment.modifiers = x11::importableModifiers();
    }
    return environment;
}

Backend makeGnomeBackend(const BackendRequest &request, const Tokens & /*tokens*/)
{
    Backend backend = xwaylandBackend(request);
    backend.screen
        = std::make_shared<gnome::GnomeScreenSource>(backend.displays, streamEnvironment());
    return backend;
}

Backend makeKWinBackend(const BackendRequest &request, const Tokens & /*tokens*/)
{
    Backend backend = xwaylandBackend(request);
    backend.screen
        = std::make_shared<kwin::KWinScreenSource>(backend.displays, streamEnvironment());
    return backend;
}

Backend makePortalBackend(const BackendRequest &request, const Tokens &tokens)
{
    Backend backend = xwaylandBackend(request);
    // With several monitors, mutter 48 sends the pointer so often that pictures may never come.
    constexpr int firstThatDoes = 48;
    const auto pointer = gnome::majorVersion() >= firstThatDoes ? portal::PointerWish::InPicture
                                                                : portal::PointerWish::Apart;
    backend.screen = std::make_shared<portal::PortalScreenSource>(backend.displays, tokens, pointer,
                                                                  streamEnvironment());
    return backend;
}

Backend makeX11Backend(const BackendRequest &request, const Tokens & /*tokens*/)
{
    return x11::makeBackend(request.listsOutput);
}

/** For a session in which nothing works. */
Backend makeNoBackend(const BackendRequest &request)
{
    Backend backend = xwaylandBackend(request);
    backend.screen = std::make_shared<NoScreenSource>();
    return backend;
}

constexpr std::array candidates{
    Candidate{.name = "gnome",
              .isUsable = [] { return isWaylandSession() && gnome::isScreenCastThere(); },
              .make = makeGnomeBackend},
    Candidate{.name = "wlroots",
              .isUsable = wlroots::isUsable,
              .make =
                  [](const BackendRequest &request, const Tokens & /*tokens*/) {
                      return wlroots::makeBackend(request.listsOutput);
                  }},
    Candidate{.name = "kwin", .isUsable = kwin::isUsable, .make = makeKWinBackend},
    Candidate{.name = "portal",
              .isUsable = [] { return isWaylandSession() && portal::isScreenCastThere(); },
              .make = makePortalBackend},
    Candidate{.name = "x11",
              .isUsable = [] { return !isWaylandSession() || !x11::isXwayland(); },
              .make = makeX11Backend},
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

std::expected<Backend, Error> makeBackend(const BackendRequest &request, const Tokens &tokens)
{
    const auto chosen = std::ranges::find_if(candidates, [&](const Candidate &candidate) {
        return request.name.isEmpty() ? candidate.isUsable()
                                      : request.name == QLatin1String(candidate.name);
    });
    if (chosen == candidates.end() && !request.name.isEmpty()) {
        return std::unexpected(
            Error{.text = Error::tr("There is no back end '%1'. Use one of: %2.")
                              .arg(request.name, backendNames().join(QStringLiteral(", "))),
                  .log = {},
                  .outcome = Outcome::unavailable});
    }
    const bool isFound = chosen != candidates.end();
    Backend backend = isFound ? chosen->make(request, tokens) : makeNoBackend(request);
    backend.name = QLatin1String(isFound ? chosen->name : "none");
    qCInfo(platformLog) << "back end" << backend.name << "on"
                        << qEnvironmentVariable("XDG_CURRENT_DESKTOP") << displayName();
    return backend;
}

} // namespace glimmerpane
