// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QPalette>

namespace glimmerpane
{

/** All colours of the program's own look, derived from a palette. Text is readable (4.5 : 1). */
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
    QColor focusRing; ///< visible (3 : 1) on the window and in fields
    QColor danger;
    QColor onDanger;
};

Theme themeFor(const QPalette &palette);

/**
 * The window border's width in points: whole pixels, so that it is not blurred. `scale` is pixels
 * per point.
 */
double borderWidth(double scale);

/** Sets the theme's colours for selected text; the platform's own may be unreadable. */
void setSelectionColors(QPalette &palette, const Theme &theme);

/** For a desktop that prefers dark colours while the platform's palette is light. */
QPalette darkPalette();
/** For the opposite case. */
QPalette lightPalette();

/** Mixes two colours: `amount` 0 gives `from`, 1 gives `to`. */
QColor mixed(const QColor &from, const QColor &to, double amount);

/** The contrast ratio of WCAG 2, from 1 to 21. */
double contrast(const QColor &one, const QColor &other);

} // namespace glimmerpane
