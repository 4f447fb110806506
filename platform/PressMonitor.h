// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>

#include <functional>
#include <memory>

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

/** Makes press monitors. Main thread. */
class Presses
{
public:
    virtual ~Presses() = default;

    /**
     * Calls `pressed` with the pointer's position (desktop pixels) while the monitor exists. Null
     * if that is not possible.
     */
    virtual std::unique_ptr<PressMonitor> monitor(std::function<void(QPoint)> pressed) = 0;
};

} // namespace glimmerpane
