// SPDX-License-Identifier: MIT
#pragma once

namespace glimmerpane
{

/**
 * While it exists it tells of presses of the left and the right mouse button in other programs'
 * windows. It only listens: no press is swallowed, held back or grabbed.
 */
class PressMonitor
{
public:
    virtual ~PressMonitor() = default;
};

} // namespace glimmerpane
