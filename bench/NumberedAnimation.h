// SPDX-License-Identifier: MIT
#pragma once

#include "bench/SharedDesktop.h"
#include "tests/support/ChildProcess.h"

namespace glimmerpane::bench
{

/** Plays an animation over the measured area, in which every pixel changes; once it runs. */
Result<testing::ChildProcess> startAnimation(const Desktop &desktop);

/** The number of the animation's picture that is on the screen now. */
Result<uint32_t> sourceNumber(const Desktop &desktop);

/** Waits until the output follows the animation. */
Result<void> awaitOutput(const SharedDesktop &shared);

} // namespace glimmerpane::bench
