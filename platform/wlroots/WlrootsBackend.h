// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Backend.h"

namespace glimmerpane::wlroots
{

/** Whether this is a compositor that lets its clients copy the screen. Waits for it. */
bool isUsable();

/**
 * The desktop of such a compositor, with X11 windows through XWayland. Presses are not reported
 * there. Needs a QGuiApplication.
 */
Backend makeBackend(bool listsOutput);

} // namespace glimmerpane::wlroots
