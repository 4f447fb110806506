// SPDX-License-Identifier: MIT
#pragma once

#include "platform/x11/Connection.h"

#include <QSocketNotifier>

#include <xcb/record.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <set>

namespace glimmerpane::x11
{

/**
 * Tells whether other clients read a window: whether they have redirected it, which is how a
 * program that captures windows gets the pixels of a covered one. The server reports the requests
 * for that, and no others, through RECORD. Main thread.
 */
class RedirectionWatch
{
public:
    /**
     * Counts from now on; `owner` is the connection whose own redirection of the window does not
     * count. Null if the server has no RECORD. Waits for the server.
     */
    static std::unique_ptr<RedirectionWatch> create(const Connection &owner, xcb_window_t window,
                                                    std::function<void()> changed);

    bool hasViewers() const { return !viewers_.empty(); }

private:
    RedirectionWatch(Connection connection, std::uint32_t owner, xcb_window_t window,
                     std::function<void()> changed);
    bool begin();
    void read();
    void note(const xcb_record_enable_context_reply_t &report);

    const Connection connection_;
    const std::uint32_t owner_; ///< its resource id base
    const xcb_window_t window_;
    const std::function<void()> changed_;
    std::uint8_t compositeOpcode_ = 0;
    unsigned int recording_ = 0; ///< the request whose replies are the reports
    std::multiset<std::uint32_t> viewers_; ///< resource id bases, one for each redirection
    QSocketNotifier notifier_;
};

} // namespace glimmerpane::x11
