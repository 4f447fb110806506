// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusServiceWatcher>
#include <QObject>

namespace glimmerpane
{

/**
 * Whether something on the session bus shows the icons of programs: a StatusNotifierWatcher with a
 * host (freedesktop.org, Status Notifier Item). Needs a session bus; never blocks. Main thread.
 */
class TrayHost : public QObject
{
    Q_OBJECT

public:
    TrayHost();

Q_SIGNALS:
    /** There is one, and perhaps was before. The first answer comes after the construction. */
    void found();

private Q_SLOTS:
    void ask();

private:
    QDBusServiceWatcher watcher_;
};

} // namespace glimmerpane
