// SPDX-License-Identifier: MIT
#include "tests/support/WaitFor.h"

#include <QCoreApplication>
#include <QDeadlineTimer>

#include <thread>

namespace glimmerpane::testing
{

namespace
{
constexpr std::chrono::milliseconds pollInterval{2};
}

bool waitFor(const std::function<bool()> &condition, std::chrono::milliseconds limit)
{
    const QDeadlineTimer deadline(limit);
    while (!condition()) {
        if (deadline.hasExpired()) {
            return false;
        }
        if (QCoreApplication::instance()) {
            QCoreApplication::processEvents();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
        std::this_thread::sleep_for(pollInterval);
    }
    return true;
}

} // namespace glimmerpane::testing
