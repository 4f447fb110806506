// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QPalette>

namespace glimmerpane
{

/** Whether texts are lighter than what they stand on. */
inline bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::Active, QPalette::Window).lightness()
        < palette.color(QPalette::Active, QPalette::WindowText).lightness();
}

/** The blue of what the program draws on the desktop, by whether that is light or dark. */
inline QColor systemBlue(const QPalette &palette)
{
    return isDark(palette) ? QColor(10, 132, 255) : QColor(0, 122, 255);
}

} // namespace glimmerpane
