// SPDX-License-Identifier: MIT
#include "bench/CopyReference.h"
#include "bench/Measurement.h"
#include "bench/NumberedAnimation.h"
#include "bench/ProcessorTime.h"
#include "bench/SharedDesktop.h"
#include "rig/OutputReader.h"
#include "rig/Statistics.h"

namespace glimmerpane::bench
{

namespace
{

constexpr double costTarget = 2.2;
constexpr double rateTarget = 59;

/** What one run gave; times are milliseconds. */
struct Run {
    SeenFrames frames;
    double copy = 0;
    double program = 0; ///< processor time for each frame shown
    double server = 0; ///< the same of the X server, without what the animation itself costs it

    double cost() const { return program + server; }
    double ratio() const { return cost() / copy; }
};

Result<Run> measureRun(const Measurement &measurement)
{
    auto desktop = startDesktop(measurement);
    if (!desktop) {
        return failure(desktop.error());
    }
    constexpr QPoint corner = measuredArea.topLeft();
    Run run;
    run.copy = copyMilliseconds(size_t{4} * measuredArea.width() * measuredArea.height());
    SharedDesktop shared{.desktop = std::move(*desktop)};
    const auto animation = startAnimation(*shared.desktop);
    if (!animation) {
        return failure(animation.error());
    }
    const auto alone = spend(*shared.desktop, 0, corner, measurement.extent.phase);
    if (!alone) {
        return failure(alone.error());
    }
    const auto shares = startProgram(measurement, true, shared);
    const auto view = shares ? outputPicture(shared) : failure(shares.error());
    if (!view) {
        return failure(view.error());
    }
    const auto sharing
        = spend(*shared.desktop, shared.program->pid(), corner, measurement.extent.phase);
    if (!sharing) {
        return failure(sharing.error());
    }
    const auto seen = countFrames(*shared.desktop, *view, {}, measurement.extent.phase);
    if (!seen || seen->sent == 0) {
        return failure(seen ? QStringLiteral("no frame was shown") : seen.error());
    }
    run.frames = *seen;
    if (const auto ended = shared.program->end(); !ended) {
        return failure(ended.error());
    }
    const auto aloneAgain = spend(*shared.desktop, 0, corner, measurement.extent.phase);
    if (!aloneAgain) {
        return failure(aloneAgain.error());
    }
    const double shownShare = static_cast<double>(seen->shown) / seen->sent;
    const double shown = sharing->sourceFrames * shownShare;
    run.program = sharing->program / shown;
    run.server = serverBeyond(*sharing, *alone, *aloneAgain) / shown;
    return run;
}

template<typename Value>
double medianOf(const std::vector<Run> &runs, Value value)
{
    std::vector<double> values;
    for (const Run &run : runs) {
        values.push_back(static_cast<double>(value(run)));
    }
    return median(values);
}

QString frameText()
{
    return QStringLiteral("different frame numbers that a second client read from the output's "
                          "Composite pixmap, once for each damage event; 1280x720, source 60 Hz, "
                          "every pixel changes");
}

std::vector<Figure> figuresOf(const std::vector<Run> &runs, const QString &times)
{
    const double rate = medianOf(runs, [](const Run &run) { return run.frames.rate(); });
    const double sent = medianOf(runs, [](const Run &run) { return run.frames.sent; });
    const double dropped = medianOf(runs, [](const Run &run) { return run.frames.dropped(); });
    const double copy = medianOf(runs, [](const Run &run) { return run.copy; });
    const double program = medianOf(runs, [](const Run &run) { return run.program; });
    const double server = medianOf(runs, [](const Run &run) { return run.server; });
    const double ratio = medianOf(runs, [](const Run &run) { return run.ratio(); });
    const QString shownFrames = QStringLiteral("for each frame shown, from /proc schedstat, while "
                                               "nobody reads the output, pointer in the area; ");
    return {
        {.name = QStringLiteral("Frames a second, full motion"),
         .measured = number(rate, 1),
         .target = QStringLiteral("at least ") + QString::number(rateTarget),
         .verdict = rate >= rateTarget ? Verdict::Met : Verdict::Missed,
         .counted = frameText() + times,
         .partOfTarget = rate > 0 ? std::optional(rateTarget / rate) : std::nullopt},
        boundedFigure(QStringLiteral("Frames dropped, full motion"), dropped, 0, {},
                      QStringLiteral("source numbers that never were in the output, of %1")
                              .arg(number(sent, 0))
                          + times),
        {.name = QStringLiteral("Copy of a frame's bytes in memory"),
         .measured = number(copy, 3) + QStringLiteral(" ms"),
         .counted = QStringLiteral("processor time of one memcpy of 3.69 MB, through 16 source and "
                                   "16 destination buffers, median of 320")
             + times},
        {.name = QStringLiteral("Processor time per frame, program"),
         .measured = number(program, 3) + QStringLiteral(" ms"),
         .counted = shownFrames + QStringLiteral("all threads of the program") + times},
        {.name = QStringLiteral("Processor time per frame, X server"),
         .measured = number(server, 3) + QStringLiteral(" ms"),
         .counted = shownFrames
             + QStringLiteral("the server while sharing, less the server with only the animation "
                              "before and after")
             + times},
        boundedFigure(QStringLiteral("Processor time per frame, in copies of its bytes"), ratio,
                      costTarget, {},
                      QStringLiteral("program and server together, divided by the memcpy of the "
                                     "same run")
                          + times)};
}

} // namespace

Figures measureFullMotion(const Measurement &measurement)
{
    const auto runs = repeat(measurement, measureRun, [](int i, const Run &run) {
        return QStringLiteral("full motion %1: %2 frames/s, %3 dropped, program %4 ms, server %5 "
                              "ms, memcpy %6 ms, ratio %7")
            .arg(i)
            .arg(number(run.frames.rate(), 1))
            .arg(run.frames.dropped())
            .arg(number(run.program, 3), number(run.server, 3), number(run.copy, 3),
                 number(run.ratio()));
    });
    if (!runs) {
        return failure(runs.error());
    }
    return figuresOf(*runs, QStringLiteral("; median of %1 runs").arg(runs->size()));
}

} // namespace glimmerpane::bench
