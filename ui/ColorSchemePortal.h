// SPDX-License-Identifier: MIT
#pragma once

#include <QCoroTask>
#include <QObject>

class QDBusVariant;
class QString;
class QVariant;

namespace glimmerpane
{

/** The desktop's preference; the numbers are the portal's. */
enum class ColorScheme {
    NoPreference = 0,
    Dark = 1,
    Light = 2,
};

/**
 * Reads the desktop's colour scheme from its settings portal on the session bus and follows
 * changes. Never blocks; does nothing without a bus or portal. Main thread.
 */
class ColorSchemePortal : public QObject
{
    Q_OBJECT

public:
    QCoro::Task<> start();

Q_SIGNALS:
    void colorSchemeTold(glimmerpane::ColorScheme scheme);

private Q_SLOTS:
    void settingChanged(const QString &group, const QString &key, const QDBusVariant &value);

private:
    void follow();
    void tell(const QVariant &value);
};

} // namespace glimmerpane
