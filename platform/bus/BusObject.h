// SPDX-License-Identifier: MIT
#pragma once

#include "services/Error.h"

#include <QCoroTask>
#include <QString>
#include <QVariantList>

#include <expected>

namespace glimmerpane
{

/** An object on the session bus, as one of its interfaces. Main thread. */
struct BusObject {
    QString service;
    QString path;
    QString interface;

    /** Whether its service can be reached; waits for the bus. */
    bool isThere() const;

    /** Calls a method. The error is about recording the screen, which is all that we call for. */
    QCoro::Task<std::expected<QVariantList, Error>> call(QString method,
                                                         QVariantList arguments = {}) const;

    /** Calls a method whose result does not matter. */
    void send(const QString &method, const QVariantList &arguments = {}) const;

    /** A property of the interface; null if it cannot be read. */
    QCoro::Task<QVariant> property(QString name) const;
    /** The same, but waits for the service. */
    QVariant propertyNow(const QString &name) const;
};

} // namespace glimmerpane
