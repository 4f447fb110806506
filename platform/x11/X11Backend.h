// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Backend.h"
#include "platform/ViewerWatch.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace glimmerpane::x11
{

/** Whether an X server can be reached. Needs no application object. */
std::expected<void, Error> checkDisplay();

/**
 * The desktop of the X server that $DISPLAY names. Its output windows are listed by the window
 * manager if `listsOutput` and if possible. Needs a QGuiApplication.
 */
Backend makeBackend(bool listsOutput);

/**
 * Output windows for GNOME on Wayland, which lists managed windows only: minimised ones. None is
 * larger than the main display, because GNOME would cut off the rest. `magnification` tells how
 * many pixels the picture of an area has for each of the X server's.
 */
std::shared_ptr<OutputWindows> outlyingOutputWindows(
    std::shared_ptr<Displays> displays, ViewerWatcher watcher,
    std::function<double(QRect area)> magnification);

/**
 * Output windows for KWin on Wayland, which lists managed windows only, but lets them go off the
 * screen, where only one pixel of them stays.
 */
std::shared_ptr<OutputWindows> parkedOutputWindows(ViewerWatcher watcher);

/** The window manager's name, such as "KWin"; empty if none announces itself. */
QByteArray windowManager();

/**
 * The layouts (modifiers of drm_fourcc.h) of the graphics driver's buffers, of 32 bits a pixel,
 * that the X server can show; none if it cannot. Waits for the server.
 */
std::vector<std::uint64_t> importableModifiers();

/** Whether the X server is Xwayland, whose clients cannot read the screen. */
bool isXwayland();

/**
 * Overlays for compositors that lose sight of a drag once the pointer has left an X11 window, and
 * whose screen X11 clients cannot read. They keep the pointer from all other windows.
 */
std::shared_ptr<Overlays> makeSpanningOverlays();

/**
 * A hidden output window for a place that a display shows, so that this display shows nothing else;
 * root pixels. No window manager moves it, and it never takes the keyboard.
 */
std::expected<std::unique_ptr<OutputWindow>, Error> makeOutputWindowAt(const QString &title,
                                                                       QRect frame);

} // namespace glimmerpane::x11
