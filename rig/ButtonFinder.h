// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

#include <optional>

namespace glimmerpane::testing
{

/**
 * The fill of the main window's coloured buttons while they can be pressed; disabled ones are
 * grey.
 */
enum class ButtonColor {
    Accent, ///< blue: start sharing
    Danger, ///< red: stop sharing
};

/**
 * A place inside the wide button of that colour, found as a person finds it: by looking. Pixels
 * of the picture; nothing if there is no such button.
 */
std::optional<QPoint> findButton(const QImage &window, ButtonColor color);

} // namespace glimmerpane::testing
