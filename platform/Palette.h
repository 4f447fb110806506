// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QPalette>

namespace glimmerpane
{

/** Whether text is lighter than its background. */
inline bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::Active, QPalette::Window).lightness()
        < palette.color(QPalette::Active, QPalette::WindowText).lightness();
}

/** The blue that the program draws with on the desktop, for a light or dark one. */
inline QColor systemBlue(const QPalette &palette)
{
    return isDark(palette) ? QColor(10, 132, 255) : QColor(0, 122, 255);
}

/** The orange that stands for a pause. */
inline QColor systemOrange(const QPalette &palette)
{
    return isDark(palette) ? QColor(255, 159, 10) : QColor(255, 149, 0);
}

} // namespace glimmerpane
