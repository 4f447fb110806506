// SPDX-License-Identifier: MIT
#pragma once

#include <QPalette>

namespace glimmerpane
{

/** Whether texts are lighter than what they stand on. */
inline bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::Active, QPalette::Window).lightness()
        < palette.color(QPalette::Active, QPalette::WindowText).lightness();
}

} // namespace glimmerpane
