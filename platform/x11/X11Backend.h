// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Backend.h"

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
 * larger than the main display, because GNOME would cut off the rest.
 */
std::shared_ptr<OutputWindows> iconicOutputWindows(std::shared_ptr<Displays> displays);

} // namespace glimmerpane::x11
