// SPDX-License-Identifier: MIT
#pragma once

#include "services/Alert.h"

#include <QPixmap>

namespace glimmerpane
{

struct Theme;

/** The picture beside an alert's text, for a screen with this many pixels for each point. */
QPixmap alertIcon(Alert::Style style, const Theme &theme, double devicePixelRatio);

} // namespace glimmerpane
