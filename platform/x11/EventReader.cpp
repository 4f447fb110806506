// SPDX-License-Identifier: MIT
#include "platform/x11/EventReader.h"

#include "services/CallOnce.h"

#include <QPointer>

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
    const auto handle = onEvent;
    const auto drained = onDrained;
    const auto next
        = [&] { return Reply<xcb_generic_event_t>(xcb_poll_for_event(connection_.get())); };
    for (auto event = next(); event;) {
        handle(*event);
        if (!self) {
            return;
        }
        event = next();
        if (!event && drained) {
            drained(); // which may send requests and so read more events
            if (!self) {
                return;
            }
            event = next();
        }
    }
    isReading_ = false;
    if (connection_.isBroken()) {
        notifier_.setEnabled(false);
        callOnce(onBroken);
    }
}

} // namespace glimmerpane::x11
