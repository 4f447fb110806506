// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Displays.h"

namespace glimmerpane::x11
{

/** RandR's monitors, in root pixels. */
class DisplaysX11 : public Displays
{
public:
    double scaleFactor() const override;
    std::vector<Display> displays() const override;
    int largestWindowSide() const override;
};

} // namespace glimmerpane::x11
