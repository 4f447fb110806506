// SPDX-License-Identifier: MIT
#pragma once

#include "platform/x11/Connection.h"

#include <QObject>
#include <QSocketNotifier>

#include <deque>
#include <functional>
#include <utility>

namespace glimmerpane::x11
{

/** Delivers a connection's events and replies from the event loop. Thread of the event loop. */
class EventReader : public QObject
{
public:
    /** The connection must outlive this object. */
    explicit EventReader(const Connection &connection);

    // Each handler may destroy this object, also those of replies.
    std::function<void(const xcb_generic_event_t &)> onEvent;
    std::function<void()> onDrained; ///< after the last of the events that have arrived
    std::function<void()> onBroken; ///< once; the connection has no more events

    /**
     * Calls `answered` with the reply to a request, or null if the server refused it. Call in the
     * requests' order; flush() must follow.
     */
    template<typename T, typename Cookie>
    void await(Cookie request, std::function<void(Reply<T>)> answered)
    {
        awaited_.push_back({.request = request.sequence,
                            .answered = [answered = std::move(answered)](void *reply) {
                                answered(Reply<T>(static_cast<T *>(reply)));
                            }});
    }

    /**
     * Sends pending requests. Use it instead of the connection's own flush(), and after every wait
     * for a reply: both may read events into memory, for which the socket does not become readable.
     */
    void flush();

private:
    struct Awaited {
        unsigned int request = 0;
        std::function<void(void *)> answered;
    };

    void read();
    bool readEvents();
    bool readReply();

    const Connection &connection_;
    QSocketNotifier notifier_;
    std::deque<Awaited> awaited_; ///< replies, in the order in which they will arrive
    bool isReading_ = false; ///< or will be in the next turn of the event loop
};

} // namespace glimmerpane::x11
