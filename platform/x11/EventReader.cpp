// SPDX-License-Identifier: MIT
#include "platform/x11/EventReader.h"

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

void EventReader::readSoon()
{
    QMetaObject::invokeMethod(this, &EventReader::read, Qt::QueuedConnection);
}

void EventReader::read()
{
    const QPointer self(this);
    const auto handle = onEvent;
    const auto drained = onDrained;
    while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(connection_.get())}) {
        handle(*event);
        if (!self) {
            return;
        }
    }
    if (drained) {
        drained();
    }
    if (self && connection_.isBroken()) {
        notifier_.setEnabled(false);
        if (const auto broken = std::exchange(onBroken, {})) {
            broken();
        }
    }
}

} // namespace glimmerpane::x11
