// SPDX-License-Identifier: MIT
#include "tests/support/DamageWatch.h"

#include <QDeadlineTimer>

#include <poll.h>

namespace glimmerpane::testing
{

Result<DamageWatch> DamageWatch::open(const QString &displayName, xcb_drawable_t drawable)
{
    auto client = XClient::connect(displayName);
    if (!client) {
        return failure(client.error());
    }
    const xcb_damage_damage_t damage = client->newId();
    const auto cookie = xcb_damage_create_checked(client->connection(), damage, drawable,
                                                  XCB_DAMAGE_REPORT_LEVEL_NON_EMPTY);
    if (const auto done = client->check(cookie, QStringLiteral("cannot watch the drawable"));
        !done) {
        return failure(done.error());
    }
    const auto *extension = xcb_get_extension_data(client->connection(), &xcb_damage_id);
    const auto notifyEvent = static_cast<uint8_t>(extension->first_event + XCB_DAMAGE_NOTIFY);
    DamageWatch watch(std::move(*client), notifyEvent, damage);
    // A new watch starts as damaged; that is not a change.
    xcb_damage_subtract(watch.client_.connection(), damage, XCB_NONE, XCB_NONE);
    watch.client_.sync();
    watch.drain();
    watch.resetCount();
    return watch;
}

bool DamageWatch::drain()
{
    bool damaged = false;
    auto *connection = client_.connection();
    while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(connection)}) {
        if ((event->response_type & 0x7f) != notifyEvent_) {
            continue;
        }
        damaged = true;
        ++count_;
    }
    if (damaged) {
        xcb_damage_subtract(connection, damage_, XCB_NONE, XCB_NONE);
        client_.flush();
    }
    return damaged;
}

bool DamageWatch::take(std::chrono::milliseconds limit)
{
    const QDeadlineTimer deadline(limit);
    while (!drain()) {
        if (deadline.hasExpired() || client_.isBroken()) {
            return false;
        }
        pollfd entry{
            .fd = xcb_get_file_descriptor(client_.connection()), .events = POLLIN, .revents = 0};
        poll(&entry, 1, static_cast<int>(deadline.remainingTime()));
    }
    return true;
}

} // namespace glimmerpane::testing
