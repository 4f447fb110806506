// SPDX-License-Identifier: MIT
#pragma once

#include "rig/ChildProcess.h"

#include <QRect>

namespace glimmerpane::testing
{

struct AnimationOptions {
    QRect area; ///< root pixels
    QString mode = QStringLiteral("full"); ///< a mode of glimmerpane_pattern
    int rate = 60; ///< frames a second
    QString title{}; ///< of a managed window; without a title, no window manager sees it
};

/** Plays the animation in a separate process, so that it can be measured separately. */
inline ChildProcess startAnimation(const QProcessEnvironment &environment,
                                   const AnimationOptions &options)
{
    const QRect area = options.area;
    return required(ChildProcess::start(
        {.program = QStringLiteral(GLIMMERPANE_PATTERN),
         .arguments = {QString::number(area.x()), QString::number(area.y()),
                       QString::number(area.width()), QString::number(area.height()), options.mode,
                       QString::number(options.rate), options.title},
         .environment = environment}));
}

} // namespace glimmerpane::testing
