// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QPalette>

namespace glimmerpane
{

/** Every colour of the program's own look, worked out from a palette. Texts are readable (4.5 : 1).
 */
struct Theme {
    bool isDark = false;
    QColor window;
    QColor windowBorder;
    QColor divider;
    QColor text;
    QColor secondaryText;
    QColor control; ///< the fill of a plain button
    QColor controlBorder;
    QColor disabledControl;
    QColor disabledText;
    QColor field;
    QColor fieldBorder;
    QColor accent;
    QColor onAccent; ///< a label on the accent colour
    QColor focusRing; ///< seen (3 : 1) on the window and in fields
    QColor danger;
    QColor onDanger;
};

Theme themeFor(const QPalette &palette);

/** A window's border in whole pixels, else it would be blurred. `scale` is pixels for each point.
 */
double borderWidth(double scale);

/** Selected text in the theme's colours; what the platform has need not be readable. */
void setSelectionColors(QPalette &palette, const Theme &theme);

/** For a desktop that wants dark colours while the platform's palette is light. */
QPalette darkPalette();
/** The reverse. */
QPalette lightPalette();

/** `amount` 0 is `from`, 1 is `to`. */
QColor mixed(const QColor &from, const QColor &to, double amount);

/** The contrast ratio of WCAG 2, from 1 to 21. */
double contrast(const QColor &one, const QColor &other);

} // namespace glimmerpane
