// SPDX-License-Identifier: MIT
#pragma once

#include "rig/XvfbServer.h"
#include "ui/FlatStyle.h"

#include <QApplication>
#include <QTest>

#include <cstdio>

namespace glimmerpane::testing
{

/** Whether a part of a window has the room that it needs, and lies inside the window. */
inline bool isWhole(const QWidget &part)
{
    const QSize smallest = part.minimumSizeHint();
    const QSize needed = part.hasHeightForWidth()
        ? QSize(smallest.width(), part.heightForWidth(part.width()))
        : smallest;
    const QRect place(part.mapTo(part.window(), QPoint()), part.size());
    return part.size().expandedTo(needed) == part.size() && part.window()->rect().contains(place);
}

/**
 * Runs the tests of one class with real widgets on an X server of their own. A session bus must be
 * there before the application, whose theme may connect to it. By default there is none: neither
 * the user's nor one that is started because there is none.
 */
template<typename Test>
int runOnPrivateDisplay(int argc, char **argv,
                        const QString &busAddress = QStringLiteral("unix:path=/nonexistent"))
{
    const auto server = XvfbServer::start();
    if (!server) {
        std::fprintf(stderr, "%s\n", qPrintable(server.error()));
        return 1;
    }
    qputenv("DISPLAY", server->displayName().toLocal8Bit());
    qputenv("QT_QPA_PLATFORM", "xcb");
    qputenv("DBUS_SESSION_BUS_ADDRESS", busAddress.toLocal8Bit());
    QApplication application(argc, argv);
    QApplication::setStyle(new FlatStyle(QStringLiteral("fusion")));
    Test test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace glimmerpane::testing
