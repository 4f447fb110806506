// SPDX-License-Identifier: MIT
#pragma once

#include "services/CallOnce.h"

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

    void windowWillClose() { callOnce(onClose); }
};

} // namespace glimmerpane
