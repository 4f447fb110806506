// SPDX-License-Identifier: MIT
#pragma once

#include "rig/Desktop.h"

#include <QRect>

namespace glimmerpane::bench::obsSettings
{

inline constexpr QSize mainWindowSize(1080, 730);

/**
 * Writes the settings of an OBS Studio that shows an area of the screen in a windowed projector,
 * at 60 frames a second and at the area's own size. Its preview is off, as it would draw the same
 * a second time. Returns the environment to start it in.
 */
Result<QProcessEnvironment> write(const Desktop &desktop, const QRect &area);

} // namespace glimmerpane::bench::obsSettings
