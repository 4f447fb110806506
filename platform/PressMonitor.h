// SPDX-License-Identifier: MIT
#pragma once

namespace glimmerpane
{

/**
 * While it exists, reports presses of the left and right mouse buttons in other programs' windows.
 * It only listens: no press is intercepted or delayed.
 */
class PressMonitor
{
public:
    virtual ~PressMonitor() = default;
};

} // namespace glimmerpane
