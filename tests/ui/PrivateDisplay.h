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

/** Runs the tests of one class with real widgets on an X server of their own. */
template<typename Test>
int runOnPrivateDisplay(int argc, char **argv)
{
    const auto server = XvfbServer::start();
    if (!server) {
        std::fprintf(stderr, "%s\n", qPrintable(server.error()));
        return 1;
    }
    qputenv("DISPLAY", server->displayName().toLocal8Bit());
    qputenv("QT_QPA_PLATFORM", "xcb");
    // Neither the user's session bus nor one that is started because there is none.
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    QApplication application(argc, argv);
    QApplication::setStyle(new FlatStyle(QStringLiteral("fusion")));
    Test test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace glimmerpane::testing
