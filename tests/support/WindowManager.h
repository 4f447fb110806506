// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/ChildProcess.h"
#include "tests/support/XClient.h"

namespace glimmerpane::testing
{

/**
 * Starts a window manager, such as "openbox", and returns once it really manages windows: some
 * announce themselves earlier and lose what is mapped in between. The environment must name the
 * client's display.
 */
Result<ChildProcess> startWindowManager(const XClient &client,
                                        const ChildProcess::Options &options);

/**
 * The same for a compositing manager, such as "picom"; returns once it owns the display's
 * compositing selection.
 */
Result<ChildProcess> startCompositor(const XClient &client, const ChildProcess::Options &options);

} // namespace glimmerpane::testing
