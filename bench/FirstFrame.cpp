// SPDX-License-Identifier: MIT
#include "bench/Measurement.h"
#include "bench/SharedDesktop.h"
#include "rig/InputInjector.h"
#include "rig/OutputReader.h"
#include "rig/PatternWindow.h"
#include "rig/Statistics.h"

namespace glimmerpane::bench
{

namespace
{

constexpr double target = 100; ///< milliseconds
constexpr std::chrono::seconds buttonLimit{10};

/** Whether the output is there and has the still picture's number and its last pixel. */
bool showsPicture(const SharedDesktop &shared, QRgb lastPixel)
{
    const auto &client = shared.desktop->client();
    const auto output = shared.program->currentOutput();
    const auto captured = output ? testing::CapturedWindow::open(client, *output)
                                 : failure(QStringLiteral("no output yet"));
    if (!captured || captured->size() != measuredArea.size()) {
        return false;
    }
    const QPoint last(measuredArea.width() - 1, measuredArea.height() - 1);
    const auto pixel = captured->part(QRect(last, QSize(1, 1)));
    return pixel && pixel->pixel(0, 0) == lastPixel && shownNumber(*captured, {}) == 0U;
}

Result<double> measureRun(const Measurement &measurement)
{
    auto desktop = startDesktop(measurement);
    if (!desktop) {
        return failure(desktop.error());
    }
    SharedDesktop shared{.desktop = std::move(*desktop)};
    const auto &client = shared.desktop->client();
    const auto picture
        = PatternWindow::open(shared.desktop->displayName(), measuredArea, PatternMode::Still);
    const auto started
        = picture ? startProgram(measurement, false, shared) : failure(picture.error());
    if (!started) {
        return failure(started.error());
    }
    const auto lastPixel = client.screenshot(QRect(measuredArea.bottomRight(), QSize(1, 1)));
    std::optional<QPoint> button;
    shared.desktop->waitFor([&] { return (button = shared.program->startButton()).has_value(); },
                            buttonLimit);
    if (!button || !lastPixel) {
        return failure(QStringLiteral("sharing cannot be started from the main window"));
    }
    const testing::InputInjector person(client);
    person.moveTo(*button);
    person.press();
    const auto begin = std::chrono::steady_clock::now();
    person.release();
    const auto time = shared.desktop->timeUntil(
        [&] { return showsPicture(shared, lastPixel->pixel(0, 0)); }, begin);
    return time ? Result<double>(*time)
                : failure(QStringLiteral("no right picture came after the click on Start sharing"));
}

} // namespace

Figures measureFirstFrame(const Measurement &measurement)
{
    const auto times = repeat(measurement, measureRun, [](int run, double time) {
        return QStringLiteral("first frame %1: %2 ms").arg(run).arg(number(time, 1));
    });
    if (!times) {
        return failure(times.error());
    }
    return std::vector{boundedFigure(
        QStringLiteral("Time from Start sharing to the first right picture"), median(*times),
        target, QStringLiteral(" ms"),
        QStringLiteral("from the release of the mouse button on Start sharing until the first and "
                       "the last pixels read from the output are the area's; first sharing of a "
                       "fresh process; median of %1 runs")
            .arg(times->size()))};
}

} // namespace glimmerpane::bench
