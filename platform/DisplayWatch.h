// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QTimer>

class QScreen;

namespace glimmerpane
{

/** Tells when displays have changed and come to rest; also once after it was made. Main thread. */
class DisplayWatch : public QObject
{
    Q_OBJECT

public:
    /** Needs a QGuiApplication. */
    DisplayWatch();

Q_SIGNALS:
    void changed();

private:
    void watch(QScreen *screen);

    QTimer settled_;
};

} // namespace glimmerpane
