// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Displays.h"
#include "platform/portal/PortalGrant.h"

namespace glimmerpane::portal
{

/**
 * The display that was granted. The portal gives its place in the compositor's units, Xwayland in
 * pixels: a multiple where the compositor lets X11 programs scale themselves. Without a match the
 * two are taken for the same.
 */
inline QRect grantedDisplay(const PortalGrant &grant, const std::vector<Display> &displays)
{
    const auto matches = [&](const QRect &pixels) {
        if (!grant.size || grant.size->isEmpty()) {
            return displays.size() == 1;
        }
        const double scale = double(pixels.width()) / grant.size->width();
        const QPoint place = grant.position.value_or(pixels.topLeft() / scale);
        constexpr int rounding = 2; // pixels
        return qAbs(pixels.height() - grant.size->height() * scale) <= rounding
            && qAbs(pixels.x() - place.x() * scale) <= rounding
            && qAbs(pixels.y() - place.y() * scale) <= rounding;
    };
    for (const Display &display : displays) {
        if (matches(display.pixels)) {
            return display.pixels;
        }
    }
    return {grant.position.value_or(QPoint()), grant.size.value_or(QSize())};
}

} // namespace glimmerpane::portal
