// SPDX-License-Identifier: MIT
#include "platform/x11/DisplaysX11.h"

#include "platform/x11/Connection.h"
#include "platform/x11/Monitors.h"

#include <QGuiApplication>
#include <QScreen>

namespace glimmerpane::x11
{

double DisplaysX11::scaleFactor() const
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    return screen != nullptr ? screen->devicePixelRatio() : 1;
}

std::vector<glimmerpane::Display> DisplaysX11::displays() const
{
    const auto connection = Connection::open();
    return connection ? monitors(*connection) : std::vector<glimmerpane::Display>();
}

int DisplaysX11::largestWindowSide() const
{
    return 32767; // sizes and positions are 16 bits wide in the X protocol
}

} // namespace glimmerpane::x11
