// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Displays.h"
#include "services/CaptureFrame.h"
#include "services/Error.h"

#include <optional>

namespace glimmerpane
{

/** Makes a negative size positive. */
Rect rectOf(const CaptureFrame &frame);

/** Why the area cannot be shared on this desktop; null if it can. */
std::optional<Error> flawOf(const CaptureFrame &frame, const Displays &desktop);

} // namespace glimmerpane
