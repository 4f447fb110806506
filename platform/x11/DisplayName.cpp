// SPDX-License-Identifier: MIT
#include "platform/x11/DisplayName.h"

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <tuple>

namespace glimmerpane::x11
{

namespace
{

/** Host, display and screen; the host is empty for a local display. */
std::tuple<std::string, int, int> parsed(QString name)
{
    if (name.startsWith(QStringLiteral("unix:"))) { // which libxcb takes for a path since 1.17
        name.remove(0, name.indexOf(u':'));
    }
    char *host = nullptr;
    int display = 0;
    int screen = 0;
    if (xcb_parse_display(name.toLocal8Bit().constData(), &host, &display, &screen) == 0) {
        return {name.toStdString(), -1, -1};
    }
    const std::unique_ptr<char, decltype(&std::free)> owned(host, &std::free);
    return {std::string(host), display, screen};
}

} // namespace

bool isSameDisplay(const QString &one, const QString &other)
{
    return parsed(one) == parsed(other);
}

} // namespace glimmerpane::x11
