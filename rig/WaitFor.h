// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>

#include <functional>
#include <thread>

namespace glimmerpane::testing
{

/**
 * Checks the condition again and again until it is true or the limit has passed, and handles the Qt
 * events of the calling thread in between. Returns whether the condition became true.
 */
inline bool waitFor(const std::function<bool()> &condition, std::chrono::milliseconds limit)
{
    const QDeadlineTimer deadline(limit);
    while (!condition()) {
        if (deadline.hasExpired()) {
            return false;
        }
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

} // namespace glimmerpane::testing
