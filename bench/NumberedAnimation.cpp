// SPDX-License-Identifier: MIT
#include "bench/NumberedAnimation.h"

#include "bench/FrameNumber.h"
#include "bench/OutputReader.h"

#include <QCoreApplication>

namespace glimmerpane::bench
{

using testing::failure;

namespace
{

constexpr std::chrono::seconds liveLimit{10};

} // namespace

Result<testing::ChildProcess> startAnimation(const Desktop &desktop)
{
    const QString geometry = QStringLiteral("%1x%2+%3+%4")
                                 .arg(measuredArea.width())
                                 .arg(measuredArea.height())
                                 .arg(measuredArea.x())
                                 .arg(measuredArea.y());
    auto animation = testing::ChildProcess::start(
        {.program = QCoreApplication::applicationDirPath() + QStringLiteral("/glimmerpane_pattern"),
         .arguments = {QStringLiteral("--geometry"), geometry},
         .environment = desktop.environment()});
    constexpr uint32_t settled = 30;
    const auto runs = [&] { return sourceNumber(desktop).value_or(0) > settled; };
    if (animation && !desktop.waitFor(runs, liveLimit)) {
        return failure(QStringLiteral("the animation does not start"));
    }
    return animation;
}

Result<uint32_t> sourceNumber(const Desktop &desktop)
{
    const auto strip
        = desktop.client().screenshot(QRect(measuredArea.topLeft(), frameNumber::stripSize));
    if (!strip) {
        return failure(strip.error());
    }
    const auto number = frameNumber::read(*strip);
    if (!number) {
        return failure(QStringLiteral("the animation cannot be seen on the screen"));
    }
    return *number;
}

Result<void> awaitOutput(const SharedDesktop &shared)
{
    const auto captured = testing::CapturedWindow::open(shared.desktop->client(), shared.output);
    if (!captured) {
        return failure(captured.error());
    }
    std::optional<uint32_t> first;
    const auto isLive = [&] {
        const auto number = shownNumber(*captured, {});
        if (number && !first) {
            first = *number;
        }
        return number && *number > *first + 30;
    };
    if (!shared.desktop->waitFor(isLive, liveLimit)) {
        return failure(QStringLiteral("the output does not show the animation"));
    }
    return {};
}

} // namespace glimmerpane::bench
