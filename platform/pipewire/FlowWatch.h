// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ViewerWatch.h"

namespace glimmerpane::pipewire
{

/**
 * A watch of all nodes that are not for sound: a desktop fills a viewer's recording while its node
 * runs. Null if PipeWire cannot be reached.
 */
std::unique_ptr<ViewerWatch> watchFlow(std::function<void()> news);

} // namespace glimmerpane::pipewire
