// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

namespace glimmerpane
{

/** Tells, as long as it lives, when a program begins to view what the desktop records. */
class ViewerWatch
{
public:
    virtual ~ViewerWatch() = default;

    /** False once it can tell no more. */
    virtual bool isWorking() const = 0;
};

/**
 * Makes a watch, or null where nothing tells. It calls `news` for each viewer, also for those that
 * view something else, and when it stops working. Main thread.
 */
using ViewerWatcher = std::function<std::unique_ptr<ViewerWatch>(std::function<void()> news)>;

} // namespace glimmerpane
