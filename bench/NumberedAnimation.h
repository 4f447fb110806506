// SPDX-License-Identifier: MIT
#pragma once

#include "bench/SharedDesktop.h"
#include "rig/ChildProcess.h"
#include "rig/OutputReader.h"

namespace glimmerpane::bench
{

struct AnimationOptions {
    QRect area = measuredArea; ///< root pixels
    QString mode = QStringLiteral("full"); ///< as glimmerpane_pattern knows it
    int rate = 60; ///< frames a second
};

/** Plays the animation over the area; once it runs. */
Result<testing::ChildProcess> startAnimation(const Desktop &desktop,
                                             const AnimationOptions &options = {});

/** The number of the picture that is on the screen now, of the animation with this corner. */
Result<uint32_t> sourceNumber(const Desktop &desktop, QPoint corner = measuredArea.topLeft());

/** The picture of the program's output, once it follows the animation. */
Result<testing::CapturedWindow> outputPicture(const SharedDesktop &shared);

/** Waits until the picture, of any program's window, follows the animation. */
Result<void> awaitOutput(const Desktop &desktop, const testing::CapturedWindow &view);

} // namespace glimmerpane::bench
