// SPDX-License-Identifier: MIT
#include "bench/NumberedAnimation.h"

#include "rig/FrameNumber.h"

#include <QCoreApplication>

namespace glimmerpane::bench
{

namespace
{

constexpr std::chrono::seconds liveLimit{10};

} // namespace

Result<testing::ChildProcess> startAnimation(const Desktop &desktop,
                                             const AnimationOptions &options)
{
    const QString geometry = QStringLiteral("%1x%2+%3+%4")
                                 .arg(options.area.width())
                                 .arg(options.area.height())
                                 .arg(options.area.x())
                                 .arg(options.area.y());
    auto animation = testing::ChildProcess::start(
        {.program = QCoreApplication::applicationDirPath() + QStringLiteral("/glimmerpane_pattern"),
         .arguments = {QStringLiteral("--geometry"), geometry, QStringLiteral("--mode"),
                       options.mode, QStringLiteral("--rate"), QString::number(options.rate)},
         .environment = desktop.environment()});
    const uint32_t settled = static_cast<uint32_t>(options.rate) / 2;
    const QPoint corner = options.area.topLeft();
    const auto runs = [&] { return sourceNumber(desktop, corner).value_or(0) > settled; };
    if (animation && !desktop.waitFor(runs, liveLimit)) {
        return failure(QStringLiteral("the animation does not start"));
    }
    return animation;
}

Result<uint32_t> sourceNumber(const Desktop &desktop, QPoint corner)
{
    const auto strip = desktop.client().screenshot(QRect(corner, frameNumber::stripSize));
    if (!strip) {
        return failure(strip.error());
    }
    const auto number = frameNumber::read(*strip);
    if (!number) {
        return failure(QStringLiteral("the animation cannot be seen on the screen"));
    }
    return *number;
}

Result<testing::CapturedWindow> outputPicture(const SharedDesktop &shared)
{
    auto view = testing::CapturedWindow::open(shared.desktop->client(), shared.output);
    const auto live = view ? awaitOutput(*shared.desktop, *view) : failure(view.error());
    return live ? std::move(view) : failure(live.error());
}

Result<void> awaitOutput(const Desktop &desktop, const testing::CapturedWindow &view)
{
    constexpr uint32_t enough = 10;
    std::optional<uint32_t> first;
    const auto isLive = [&] {
        const auto number = shownNumber(view, {});
        if (number && !first) {
            first = *number;
        }
        return number && *number > *first + enough;
    };
    if (!desktop.waitFor(isLive, liveLimit)) {
        return failure(QStringLiteral("the output does not show the animation"));
    }
    return {};
}

} // namespace glimmerpane::bench
