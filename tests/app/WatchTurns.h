// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QTest>
#include <QTimer>

namespace glimmerpane
{

/** Counts the turns of the half-second window watch. */
class WatchTurns : public QObject
{
public:
    WatchTurns() { QCoreApplication::instance()->installEventFilter(this); }

    /** Runs the event loop until the watch has had two turns from now on. */
    bool pass()
    {
        const int enough = turns_ + 2;
        return QTest::qWaitFor([this, enough] { return turns_ >= enough; });
    }

private:
    bool eventFilter(QObject *receiver, QEvent *event) override
    {
        const auto *timer = qobject_cast<QTimer *>(receiver);
        turns_ += event->type() == QEvent::Timer && timer && timer->interval() == 500;
        return false;
    }

    int turns_ = 0;
};

} // namespace glimmerpane
