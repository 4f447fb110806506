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
     * Reads in the next turn of the event loop what has arrived in memory together with the answer
     * to a request: no socket will tell of it.
     */
    void readSoon();

private:
    void read();

    const Connection &connection_;
    QSocketNotifier notifier_;
};

} // namespace glimmerpane::x11
