// SPDX-License-Identifier: MIT
#pragma once

#include "rig/ChildProcess.h"

#include <QRect>

namespace glimmerpane::testing
{

struct AnimationOptions {
    QRect area; ///< root pixels
    QString mode = QStringLiteral("full"); ///< as glimmerpane_pattern knows it
    int rate = 60; ///< frames a second
    QString title{}; ///< of an ordinary window; without one no window manager knows of it
};

/** Plays the animation from a process of its own, which can be measured apart. */
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
