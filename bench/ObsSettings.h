// SPDX-License-Identifier: MIT
#pragma once

#include "bench/Measurement.h"

namespace glimmerpane::bench::obsSettings
{

inline constexpr QSize mainWindowSize(1080, 730);

/**
 * Writes the settings of an OBS Studio that shows an area of the screen in a windowed projector,
 * at 60 frames a second and at the area's own size. Its preview is off, as it would draw the same
 * a second time. Returns the environment to start it in.
 */
QProcessEnvironment write(const MeasuredDesktop &desktop, const QRect &area);

} // namespace glimmerpane::bench::obsSettings
