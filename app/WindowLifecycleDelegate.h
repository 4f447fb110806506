// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <utility>

namespace glimmerpane
{

/**
 * Reports once that a window closes. Main thread. Hold a shared pointer during the call, since the
 * callback may release it.
 */
class WindowLifecycleDelegate
{
public:
    explicit WindowLifecycleDelegate(std::function<void()> closed)
        : onClose(std::move(closed))
    {
    }

    std::function<void()> onClose; ///< empty after the call

    void windowWillClose()
    {
        if (const auto closed = std::exchange(onClose, {})) {
            closed();
        }
    }
};

} // namespace glimmerpane
