// SPDX-License-Identifier: MIT
#pragma once

#include "rig/XClient.h"

#include <QImage>

namespace glimmerpane::testing
{

constexpr QRect windowSignMark(10, 10, 20, 20);

/** Fills a window with a colour, but for a white square that gives it a direction. */
inline void drawWindowSign(const XClient &client, xcb_window_t window, QSize size, QRgb color)
{
    client.fill(window, {QPoint(), size}, color);
    client.fill(window, windowSignMark, 0xffffffff);
}

/** What it then looks like. */
inline QImage windowSign(QSize size, QRgb color)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    for (int y = windowSignMark.top(); y <= windowSignMark.bottom(); ++y) {
        for (int x = windowSignMark.left(); x <= windowSignMark.right(); ++x) {
            image.setPixel(x, y, 0xffffffff);
        }
    }
    return image;
}

} // namespace glimmerpane::testing
