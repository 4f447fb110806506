// SPDX-License-Identifier: MIT
// Plays a numbered animation on the display until it is stopped.
#include "rig/PatternAnimation.h"
#include "rig/StopSignals.h"

#include <QCoreApplication>

#include <condition_variable>
#include <mutex>

using namespace glimmerpane::testing;

int main(int argc, char **argv)
{
    const StopSignals signals;
    const QCoreApplication application(argc, argv);
    const QStringList given = QCoreApplication::arguments();
    const QString modes[] = {QStringLiteral("full"), QStringLiteral("cursor"),
                             QStringLiteral("typing")}; // in the order of PatternMode
    const auto *const mode = std::ranges::find(modes, given.value(5));
    if (given.size() != 8 || mode == std::end(modes) || given[6].toInt() <= 0) {
        qCritical("Usage: %s X Y WIDTH HEIGHT full|cursor|typing RATE TITLE", argv[0]);
        return 1;
    }
    auto window = PatternWindow::open(
        qEnvironmentVariable("DISPLAY"),
        {.rectangle = {given[1].toInt(), given[2].toInt(), given[3].toInt(), given[4].toInt()},
         .mode = static_cast<PatternMode>(mode - modes),
         .title = given[7]});
    if (!window) {
        qCritical("%s", qPrintable(window.error()));
        return 1;
    }
    PatternAnimation animation(std::move(*window), given[6].toInt());
    animation.start();
    std::mutex mutex;
    std::condition_variable_any condition;
    std::unique_lock lock(mutex);
    condition.wait(lock, signals.token(), [] { return false; });
    return 0;
}
