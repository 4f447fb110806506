// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/XClient.h"

#include <chrono>
#include <xcb/damage.h>

namespace glimmerpane::testing
{

/**
 * Tells when something was drawn into a window or pixmap. Has a connection of its own, so that
 * nobody else's events mix with its. One event stands for everything since the last take().
 */
class DamageWatch
{
public:
    static Result<DamageWatch> open(const QString &displayName, xcb_drawable_t drawable);

    /**
     * Waits for an event, or for nothing with a limit of 0, and clears the damage. Returns
     * whether there was any. Does not handle Qt events.
     */
    bool take(std::chrono::milliseconds limit = {});

    /** Events since the start or the last reset. */
    int count() const { return count_; }
    void resetCount() { count_ = 0; }

    const XClient &client() const { return client_; }

private:
    DamageWatch(XClient client, uint8_t notifyEvent, xcb_damage_damage_t damage)
        : client_(std::move(client))
        , notifyEvent_(notifyEvent)
        , damage_(damage)
    {
    }
    bool drain();

    XClient client_;
    uint8_t notifyEvent_;
    xcb_damage_damage_t damage_;
    int count_ = 0;
};

} // namespace glimmerpane::testing
