// SPDX-License-Identifier: MIT
#pragma once

#include "app/Commands.h"
#include "platform/bus/ServedObject.h"

namespace glimmerpane
{

/**
 * Adds the interface for other programs, io.github.glimmerpane.Glimmerpane1, to the object, and has
 * it announce changes; docs/dbus.md describes it. Its methods do what the command line does. The
 * others must outlive the object. Main thread.
 */
void serveSession(ServedObject &object, MainViewModel &model, AreaFrame &frame, Commands &commands);

} // namespace glimmerpane
