// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>

namespace glimmerpane::testing
{

/** A settings portal that only knows the colour scheme, which is dark at first. */
class SettingsPortal : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    static constexpr uint dark = 1;
    static constexpr uint light = 2;

    /** On the session bus with this address; answers while its thread handles Qt's events. */
    explicit SettingsPortal(const QString &address)
        : connection_(QDBusConnection::connectToBus(address, QStringLiteral("portal")))
        , isThere_(connection_.registerObject(
                       QStringLiteral("/org/freedesktop/portal/desktop"), this,
                       QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals)
                   && connection_.registerService(QStringLiteral("org.freedesktop.portal.Desktop")))
    {
        qRegisterMetaType<QDBusVariant>(); // otherwise the signal is not sent: its type has no name
    }
    ~SettingsPortal() override { QDBusConnection::disconnectFromBus(QStringLiteral("portal")); }
    Q_DISABLE_COPY_MOVE(SettingsPortal)

    bool isThere() const { return isThere_; }

    void change(uint scheme)
    {
        scheme_ = scheme;
        Q_EMIT SettingChanged(QStringLiteral("org.freedesktop.appearance"),
                              QStringLiteral("color-scheme"), QDBusVariant(scheme));
    }

public Q_SLOTS:
    QDBusVariant Read(const QString &group, const QString &key)
    {
        const bool isKnown = group == QStringLiteral("org.freedesktop.appearance")
            && key == QStringLiteral("color-scheme");
        // As the real portal does: a variant in a variant.
        return QDBusVariant(QVariant::fromValue(QDBusVariant(isKnown ? scheme_ : 0U)));
    }

Q_SIGNALS:
    void SettingChanged(const QString &group, const QString &key, const QDBusVariant &value);

private:
    QDBusConnection connection_;
    bool isThere_;
    uint scheme_ = dark;
};

} // namespace glimmerpane::testing
