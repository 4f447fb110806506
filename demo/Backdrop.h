// SPDX-License-Identifier: MIT
#pragma once

#include "rig/XClient.h"

namespace glimmerpane::demo
{

/**
 * A desktop as a user may have it: wallpaper, a bar and some documents, laid out for an area that
 * is shared and, if `outlined`, with a fine line around it. Needs a QGuiApplication.
 */
QImage drawBackdrop(QSize screen, const QRect &area, bool outlined = true);

/** Its wallpaper and bar alone. */
QImage drawWallpaper(QSize screen);

/** Makes the picture the display's background; it must have the display's size. */
testing::Result<void> setBackground(const testing::XClient &client, const QImage &picture);

} // namespace glimmerpane::demo
