// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <utility>

namespace glimmerpane
{

/**
 * Tells once that a window closes. Main thread; keep it alive by a shared pointer while it is told,
 * since the callback may let go of it.
 */
class WindowLifecycleDelegate
{
public:
    explicit WindowLifecycleDelegate(std::function<void()> closed)
        : onClose(std::move(closed))
    {
    }

    std::function<void()> onClose; ///< empty once it has been called

    void windowWillClose()
    {
        if (const auto closed = std::exchange(onClose, {})) {
            closed();
        }
    }
};

} // namespace glimmerpane
