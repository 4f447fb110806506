// SPDX-License-Identifier: MIT
#pragma once

#include <QSize>

#include <functional>
#include <memory>
#include <optional>

namespace glimmerpane
{

/** Tells, as long as it lives, of the programs that view what the desktop records. */
class ViewerWatch
{
public:
    virtual ~ViewerWatch() = default;

    /** False once it can tell no more. */
    virtual bool isWorking() const = 0;

    /**
     * Whether another program gets pictures of exactly this size, in pixels. Null if all that is
     * known is that somebody gets other ones, which may be larger than what they show, or if it
     * does not work.
     */
    virtual std::optional<bool> isViewed(QSize size) const = 0;
};

/**
 * Makes a watch, or null where nothing tells. It calls `news` for each viewer that comes or goes,
 * also for those that view something else, and when it stops working. Main thread.
 */
using ViewerWatcher = std::function<std::unique_ptr<ViewerWatch>(std::function<void()> news)>;

} // namespace glimmerpane
