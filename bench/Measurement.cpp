// SPDX-License-Identifier: MIT
#include "bench/Measurement.h"

#include "rig/ProcessUsage.h"

#include <QTextStream>

#include <thread>

namespace glimmerpane::bench
{

using Clock = std::chrono::steady_clock;

void Measurement::tell(const QString &text) const
{
    QTextStream(stderr) << text << "\n";
}

void Measurement::rest(std::chrono::milliseconds time) const
{
    constexpr std::chrono::milliseconds slice{50};
    for (auto now = Clock::now(), end = now + time; now < end; now = Clock::now()) {
        std::this_thread::sleep_until(std::min(end, now + slice));
        require(!stop.stop_requested(), "stopped");
    }
}

std::vector<Figure> Measurement::repeat(std::vector<Figure> figures,
                                        const std::function<std::vector<double>()> &run) const
{
    std::vector<std::vector<double>> values(figures.size());
    for (int i = 1; i <= extent.runs; ++i) {
        const auto row = run();
        for (size_t k = 0; k < figures.size(); ++k) {
            values[k].push_back(row.at(k));
            tell(u"%1 (%2): %3"_s.arg(figures[k].name)
                     .arg(i)
                     .arg(number(row[k], figures[k].decimals) + figures[k].unit));
        }
        require(!stop.stop_requested(), "stopped");
    }
    for (size_t k = 0; k < figures.size(); ++k) {
        const Pick pick = figures[k].pick;
        figures[k].value = pick.of(values[k]);
        figures[k].counted
            += u"; %1 of %2 runs"_s.arg(QString::fromLatin1(pick.name)).arg(extent.runs);
    }
    return figures;
}

MeasuredDesktop::MeasuredDesktop(const Measurement &given, WindowManager manager, QSize screen)
    : ProgramFixture(manager, 1, screen)
    , measurement(given)
{
    executable = measurement.executable;
}

void MeasuredDesktop::startProgram(bool share)
{
    input.moveTo(pointerInArea);
    startWith(measuredArea, measuredMainWindow, share);
}

ChildProcess MeasuredDesktop::animate(const AnimationOptions &options) const
{
    auto animation = startAnimation(environment, options);
    awaitMotion(screen(), options.area.topLeft());
    return animation;
}

CapturedWindow MeasuredDesktop::screen() const
{
    return required(CapturedWindow::open(client, client.root(), PictureOf::Screen));
}

CapturedWindow MeasuredDesktop::movingOutput() const
{
    auto output = required(CapturedWindow::open(client, outputWindow().value()));
    awaitMotion(output);
    return output;
}

Spent MeasuredDesktop::spend(pid_t pid, std::chrono::milliseconds time, QPoint corner) const
{
    const auto usage
        = [](pid_t of) { return of ? required(ProcessUsage::of(of)) : ProcessUsage(); };
    const auto firstFrame = required(shownNumber(screen(), corner));
    const auto begin = Clock::now();
    const auto server0 = usage(server.pid());
    const auto program0 = usage(pid);
    measurement.rest(time);
    const auto server1 = usage(server.pid());
    const auto program1 = usage(pid);
    const auto end = Clock::now();
    return {.seconds = std::chrono::duration<double>(end - begin).count(),
            .server = server1.cpu() - server0.cpu(),
            .program = program1.cpu() - program0.cpu(),
            .wakeUps = program1.wakeUps() - program0.wakeUps(),
            .sourceFrames
            = static_cast<double>(required(shownNumber(screen(), corner)) - firstFrame)};
}

FrameCost costOf(const Spent &spent, const SeenFrames &seen, const Spent &aloneBefore,
                 const Spent &aloneAfter)
{
    const double shown = spent.sourceFrames * seen.shown / seen.sent;
    const auto beyond = [&](double Spent::*share) {
        const double alone = (aloneBefore.*share + aloneAfter.*share)
            / (aloneBefore.sourceFrames + aloneAfter.sourceFrames) * spent.sourceFrames;
        return (spent.*share - alone) / shown;
    };
    return {.shown = shown,
            .program = spent.program / shown,
            .server = beyond(&Spent::server),
            .compositor = beyond(&Spent::compositor)};
}

double timeUntil(const std::function<bool()> &condition, Clock::time_point begin,
                 const char *otherwise)
{
    while (!condition()) {
        require(Clock::now() < begin + patience, otherwise);
    }
    return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
}

} // namespace glimmerpane::bench
