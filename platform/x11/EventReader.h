// SPDX-License-Identifier: MIT
#pragma once

#include "platform/x11/Connection.h"

#include <QObject>
#include <QSocketNotifier>

#include <functional>

namespace glimmerpane::x11
{

/** Hands on the events of a connection from the event loop. Thread of the event loop. */
class EventReader : public QObject
{
public:
    /** The connection must outlive the reader. */
    explicit EventReader(const Connection &connection);

    // Each of them may destroy the reader.
    std::function<void(const xcb_generic_event_t &)> onEvent;
    std::function<void()> onDrained; ///< after the last of the events that had arrived
    std::function<void()> onBroken; ///< once; the connection has no more events

    /**
     * Sends what has been requested. Use it instead of the connection's own flush(), and after
     * every wait for an answer: both can read events into memory, of which no socket will tell.
     */
    void flush();

private:
    void read();

    const Connection &connection_;
    QSocketNotifier notifier_;
    bool isReading_ = false; ///< or going to, in the next turn of the event loop
};

} // namespace glimmerpane::x11
