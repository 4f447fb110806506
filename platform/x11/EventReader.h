// SPDX-License-Identifier: MIT
#pragma once

#include "platform/x11/Connection.h"

#include <QObject>
#include <QSocketNotifier>

#include <functional>

namespace glimmerpane::x11
{

/** Delivers a connection's events from the event loop. Thread of the event loop. */
class EventReader : public QObject
{
public:
    /** The connection must outlive this object. */
    explicit EventReader(const Connection &connection);

    // Each handler may destroy this object.
    std::function<void(const xcb_generic_event_t &)> onEvent;
    std::function<void()> onDrained; ///< after the last of the events that have arrived
    std::function<void()> onBroken; ///< once; the connection has no more events

    /**
     * Sends pending requests. Use it instead of the connection's own flush(), and after every wait
     * for a reply: both may read events into memory, for which the socket does not become readable.
     */
    void flush();

private:
    void read();

    const Connection &connection_;
    QSocketNotifier notifier_;
    bool isReading_ = false; ///< or will be in the next turn of the event loop
};

} // namespace glimmerpane::x11
