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

} // namespace glimmerpane::x11
