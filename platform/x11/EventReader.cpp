// SPDX-License-Identifier: MIT
#include "platform/x11/EventReader.h"

#include "services/CallOnce.h"

#include <QPointer>

#include <xcb/xcbext.h>

#include <utility>

namespace glimmerpane::x11
{

EventReader::EventReader(const Connection &connection)
    : connection_(connection)
    , notifier_(connection.fileDescriptor(), QSocketNotifier::Read)
{
    connect(&notifier_, &QSocketNotifier::activated, this, &EventReader::read);
}

void EventReader::flush()
{
    connection_.flush();
    if (!std::exchange(isReading_, true)) {
        QMetaObject::invokeMethod(this, &EventReader::read, Qt::QueuedConnection);
    }
}

void EventReader::read()
{
    isReading_ = true;
    const QPointer self(this);
    while (self && (readEvents() || readReply())) { }
    if (!self) {
        return;
    }
    isReading_ = false;
    if (connection_.isBroken()) {
        notifier_.setEnabled(false);
        callOnce(onBroken);
    }
}

/** False if there were none. */
bool EventReader::readEvents()
{
    const QPointer self(this);
    const auto handle = onEvent;
    const auto drained = onDrained;
    bool hasRead = false;
    while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(connection_.get())}) {
        hasRead = true;
        handle(*event);
        if (!self) {
            return true;
        }
    }
    if (hasRead && drained) {
        drained(); // which may send requests and so read more events
    }
    return hasRead;
}

/** False if the next one has not arrived, or none is awaited. */
bool EventReader::readReply()
{
    void *reply = nullptr;
    xcb_generic_error_t *error = nullptr;
    if (awaited_.empty()
        || xcb_poll_for_reply(connection_.get(), awaited_.front().request, &reply, &error) == 0) {
        return false;
    }
    const Reply<xcb_generic_error_t> refusal(error);
    const auto answered = std::move(awaited_.front().answered);
    awaited_.pop_front();
    answered(reply);
    return true;
}

} // namespace glimmerpane::x11
