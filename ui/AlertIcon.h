// SPDX-License-Identifier: MIT
#pragma once

#include "services/Alert.h"

#include <QPixmap>

namespace glimmerpane
{

struct Theme;

/** The icon next to an alert's text, for a screen with this many pixels per point. */
QPixmap alertIcon(Alert::Style style, const Theme &theme, double devicePixelRatio);

} // namespace glimmerpane
