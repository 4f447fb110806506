// SPDX-License-Identifier: MIT
#include "platform/wlroots/WlrootsBackend.h"

#include "platform/Log.h"
#include "platform/wlroots/OutputWindowsWlroots.h"
#include "platform/wlroots/ScreenSourceWlroots.h"
#include "platform/wlroots/ScreencopySession.h"
#include "platform/x11/X11Backend.h"

namespace glimmerpane::wlroots
{

bool isUsable()
{
    return !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") && ScreencopySession::open().has_value();
}

Backend makeBackend(bool listsOutput)
{
    if (listsOutput) {
        qCWarning(platformLog).noquote()
            << Error::tr("--output-window=managed has no effect under this compositor, which would "
                         "show the window.");
    }
    Backend backend = x11::makeBackend(false);
    backend.name = QStringLiteral("wlroots");
    backend.screen = std::make_shared<ScreenSourceWlroots>();
    backend.outputWindows = std::make_shared<OutputWindowsWlroots>(backend.outputWindows);
    backend.overlays = x11::makeSpanningOverlays();
    backend.areaDrag = AreaDrag::Impossible;
    backend.presses = nullptr; // XWayland only sees those in X11 windows
    return backend;
}

} // namespace glimmerpane::wlroots
