// SPDX-License-Identifier: MIT
#pragma once

#include "rig/XClient.h"

#include <QDeadlineTimer>

#include <poll.h>
#include <xcb/damage.h>

namespace glimmerpane::testing
{

/**
 * Tells when something has been drawn into a window or pixmap. Has its own connection, so that its
 * events do not mix with others. One event stands for everything since the last take().
 */
class DamageWatch
{
public:
    static Result<DamageWatch> open(const QString &displayName, xcb_drawable_t drawable)
    {
        auto client = XClient::connect(displayName);
        if (!client) {
            return failure(client.error());
        }
        DamageWatch watch(std::move(*client));
        const auto cookie = xcb_damage_create_checked(watch.client_.connection(), watch.damage_,
                                                      drawable, XCB_DAMAGE_REPORT_LEVEL_NON_EMPTY);
        if (const auto done = watch.client_.check(cookie, QStringLiteral("cannot watch")); !done) {
            return failure(done.error());
        }
        // A new watch starts out damaged, which is not a change.
        watch.take();
        watch.resetCount();
        return watch;
    }

    /**
     * Waits for an event (with a limit of 0, only looks) and clears the damage. Returns whether
     * there was any. Does not handle Qt events.
     */
    bool take(std::chrono::milliseconds limit = {})
    {
        const QDeadlineTimer deadline(limit);
        const int before = count_;
        while (!countEvents() && !deadline.hasExpired() && !client_.isBroken()) {
            pollfd entry{.fd = client_.fileDescriptor(), .events = POLLIN, .revents = 0};
            poll(&entry, 1, static_cast<int>(deadline.remainingTime()));
        }
        xcb_damage_subtract(client_.connection(), damage_, XCB_NONE, XCB_NONE);
        client_.flush();
        return count_ != before;
    }

    /** Events since the start or the last reset. */
    int count() const { return count_; }
    void resetCount() { count_ = 0; }

private:
    explicit DamageWatch(XClient client)
        : client_(std::move(client))
        , damage_(client_.newId())
    {
    }

    bool countEvents()
    {
        const int before = count_;
        const auto *const extension = xcb_get_extension_data(client_.connection(), &xcb_damage_id);
        while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(client_.connection())}) {
            const int type = event->response_type & 0x7f;
            count_ += type == extension->first_event + XCB_DAMAGE_NOTIFY;
        }
        return count_ != before;
    }

    XClient client_;
    xcb_damage_damage_t damage_;
    int count_ = 0;
};

} // namespace glimmerpane::testing
