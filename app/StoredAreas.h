// SPDX-License-Identifier: MIT
#pragma once

#include "app/AreaOptions.h"
#include "app/CommandResult.h"
#include "services/CaptureFrame.h"

#include <optional>

namespace glimmerpane
{

/**
 * Saves `current` under a name, forgets a name and lists the names, as the options ask. Without a
 * current area, there is nothing to save. Any thread; waits for the disk.
 */
CommandResult obeyStored(const AreaOptions &options, const std::optional<CaptureFrame> &current);

/** The same for a program that does not run: the current area is the stored one. */
CommandResult obeyStored(const AreaOptions &options);

} // namespace glimmerpane
