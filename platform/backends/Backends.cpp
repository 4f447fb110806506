// SPDX-License-Identifier: MIT
#include "platform/backends/Backends.h"

#include "platform/wlroots/WlrootsBackend.h"
#include "platform/x11/DisplayName.h"
#include "platform/x11/X11Backend.h"

#include <algorithm>
#include <array>

namespace glimmerpane
{

namespace
{

/** One way to share; the first whose probe succeeds is chosen. */
struct Candidate {
    const char *name;
    bool (*isUsable)();
    Backend (*make)(const BackendRequest &request);
};

constexpr std::array candidates{
    Candidate{
        .name = "wlroots",
        .isUsable = wlroots::isUsable,
        .make
        = [](const BackendRequest &request) { return wlroots::makeBackend(request.listsOutput); }},
    Candidate{
        .name = "x11",
        .isUsable = [] { return true; },
        .make
        = [](const BackendRequest &request) { return x11::makeBackend(request.listsOutput); }},
};

} // namespace

QStringList backendNames()
{
    QStringList names;
    for (const Candidate &candidate : candidates) {
        names.append(QLatin1String(candidate.name));
    }
    return names;
}

std::expected<void, Error> prepareDesktop()
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "xcb");
    }
    return x11::checkDisplay();
}

QString displayName()
{
    return qEnvironmentVariable("DISPLAY");
}

bool isSameDisplay(const QString &one, const QString &other)
{
    return x11::isSameDisplay(one, other);
}

std::expected<Backend, Error> makeBackend(const BackendRequest &request)
{
    const auto chosen = std::ranges::find_if(candidates, [&](const Candidate &candidate) {
        return request.name.isEmpty() ? candidate.isUsable()
                                      : request.name == QLatin1String(candidate.name);
    });
    if (chosen == candidates.end()) {
        return std::unexpected(
            Error{.text = Error::tr("There is no back end '%1'. Use one of: %2.")
                              .arg(request.name, backendNames().join(QStringLiteral(", "))),
                  .log = {},
                  .outcome = Outcome::unavailable});
    }
    return chosen->make(request);
}

} // namespace glimmerpane
