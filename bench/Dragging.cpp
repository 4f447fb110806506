// SPDX-License-Identifier: MIT
#include "bench/Measurement.h"
#include "bench/SharedDesktop.h"
#include "rig/InputInjector.h"
#include "rig/PatternAnimation.h"
#include "rig/Statistics.h"
#include "rig/XWindows.h"

#include <QDeadlineTimer>

#include <poll.h>

namespace glimmerpane::bench
{

namespace
{

using Clock = std::chrono::steady_clock;

constexpr double medianTarget = 2; ///< milliseconds
constexpr double highTarget = 8; ///< milliseconds
constexpr std::chrono::milliseconds betweenSteps{8};
constexpr std::chrono::seconds answerLimit{5};
constexpr QPoint insideGrip(60, 60); ///< from the top left corner; off the edges and the buttons
constexpr QRect animated(420, 60, 1500, 1000); ///< beside the main window
constexpr int stepsPerRound = 50;

/** Up left and back again, so that every step goes to another place and a round ends at home. */
QPoint offsetAt(int step)
{
    constexpr int half = stepsPerRound / 2;
    return QPoint(-6, -4) * (half - std::abs(half - step % stepsPerRound));
}

double millisecondsSince(Clock::time_point begin)
{
    return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
}

/** What all runs of a session gave. */
struct Dragged {
    std::vector<double> openings; ///< milliseconds, as all times
    std::vector<double> moves;
    std::vector<double> resizes;
    int wrong = 0; ///< answers with another geometry than the step asks for
    uint32_t lost = 0; ///< frames
    uint32_t lostWithout = 0; ///< in as long a time without a drag
};

/** Drags the selector as a person does and sees through another client what becomes of it. */
struct Drag {
    const Desktop &desktop;
    const testing::XClient &watcher;
    Dragged &dragged;
    const testing::InputInjector person{desktop.client()};
    xcb_window_t selector = XCB_WINDOW_NONE;

    Result<void> open(QPoint setArea);
    Result<void> timeSteps(int count, bool resizes) const;
    Result<void> countLostFrames(PatternAnimation &animation, std::chrono::milliseconds time) const;

    void watch(xcb_window_t window, uint32_t events) const
    {
        xcb_change_window_attributes(watcher.get(), window, XCB_CW_EVENT_MASK, &events);
        watcher.sync();
    }
    void sendMotion(QPoint place) const
    {
        const auto &client = desktop.client();
        xcb_test_fake_input(client.get(), XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME, client.root(),
                            static_cast<int16_t>(place.x()), static_cast<int16_t>(place.y()), 0);
        client.flush();
    }
    /** The next event of this type; null if none comes. */
    template<typename Event>
    Reply<Event> next(int type) const
    {
        const QDeadlineTimer deadline(answerLimit);
        while (!deadline.hasExpired() && !watcher.isBroken() && !desktop.stopRequested()) {
            Reply<xcb_generic_event_t> event{xcb_poll_for_event(watcher.get())};
            if (event && (event->response_type & 0x7f) == type) {
                return Reply<Event>(reinterpret_cast<Event *>(event.release()));
            }
            if (!event) {
                pollfd entry{.fd = watcher.fileDescriptor(), .events = POLLIN, .revents = 0};
                poll(&entry, 1, static_cast<int>(deadline.remainingTime()));
            }
        }
        return {};
    }
};

Result<void> Drag::open(QPoint setArea)
{
    watch(watcher.root(), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
    person.moveTo(setArea);
    person.press();
    const auto begin = Clock::now();
    person.release();
    while (const auto mapped = next<xcb_map_notify_event_t>(XCB_MAP_NOTIFY)) {
        const double time = millisecondsSince(begin);
        if (testing::titleOf(desktop.client(), mapped->window) == selectorTitle()) {
            dragged.openings.push_back(time);
            selector = mapped->window;
            watch(watcher.root(), XCB_EVENT_MASK_NO_EVENT);
            watch(selector, XCB_EVENT_MASK_STRUCTURE_NOTIFY);
            return {};
        }
    }
    return failure(QStringLiteral("no selector came after the click on Set area"));
}

/** Drags the inside or, with `resizes`, the top left corner. */
Result<void> Drag::timeSteps(int count, bool resizes) const
{
    const QPoint grip = measuredArea.topLeft() + (resizes ? QPoint() : insideGrip);
    person.moveTo(grip);
    person.press();
    for (int step = 1; step <= count; ++step) {
        const QPoint offset = offsetAt(step);
        const auto begin = Clock::now();
        sendMotion(grip + offset);
        const auto seen = next<xcb_configure_notify_event_t>(XCB_CONFIGURE_NOTIFY);
        if (!seen) {
            return failure(QStringLiteral("no answer to step %1 of a drag").arg(step));
        }
        (resizes ? dragged.resizes : dragged.moves).push_back(millisecondsSince(begin));
        const QRect expected = resizes
            ? QRect(measuredArea.topLeft() + offset, measuredArea.bottomRight())
            : measuredArea.translated(offset);
        dragged.wrong += QRect(seen->x, seen->y, seen->width, seen->height) != expected;
    }
    person.release();
    return {};
}

Result<void> Drag::countLostFrames(PatternAnimation &animation,
                                   std::chrono::milliseconds time) const
{
    const auto lost = [&] { return animation.missedDeadlines() + animation.lateFrames(); };
    animation.start();
    if (!desktop.rest(time)) {
        return failure(QStringLiteral("stopped"));
    }
    const uint32_t before = lost();
    const QPoint grip = measuredArea.topLeft() + insideGrip;
    person.moveTo(grip);
    person.press();
    int step = 0;
    for (auto due = Clock::now(), end = due + time; due < end; due += betweenSteps) {
        std::this_thread::sleep_until(due);
        sendMotion(grip + offsetAt(++step));
    }
    dragged.lost += lost() - before;
    dragged.lostWithout += before;
    animation.freeze();
    const auto isThere = [&] {
        return testing::geometryOf(desktop.client(), selector)
            == measuredArea.translated(offsetAt(step));
    };
    return desktop.waitFor(isThere, answerLimit)
        ? Result<void>()
        : failure(QStringLiteral("the selector does not follow the drag"));
}

Result<void> measureRun(const Measurement &measurement, bool compositor, Dragged &dragged)
{
    const auto desktop = startDesktop(measurement, compositor);
    if (!desktop) {
        return failure(desktop.error());
    }
    auto program
        = Program::start(**desktop, {.executable = measurement.executable, .area = measuredArea});
    // A window that has painted nothing yet shows what lies below: the animation comes later, as
    // its blue could pass for that of a button.
    const auto placed = program ? program->placeMainWindow(measuredMainWindow, measuredArea)
                                : failure(program.error());
    const auto button = placed ? program->awaitSetArea() : failure(placed.error());
    if (!button) {
        return failure(button.error());
    }
    auto window = PatternWindow::open((*desktop)->displayName(), animated);
    const auto watcher = testing::XClient::connect((*desktop)->displayName());
    if (!window || !watcher) {
        return failure(QStringLiteral("the animation does not start"));
    }
    PatternAnimation animation(std::move(*window));
    Drag drag{.desktop = **desktop, .watcher = *watcher, .dragged = dragged};
    const int count = measurement.extent.changes / 10 * stepsPerRound;
    auto done = drag.open(*button);
    done = done ? drag.timeSteps(count, false) : done;
    done = done ? drag.timeSteps(count, true) : done;
    return done ? drag.countLostFrames(animation, measurement.extent.phase) : done;
}

std::vector<Figure> figuresOf(const Dragged &all, const QString &session, const Extent &extent)
{
    const QString unit = QStringLiteral(" ms");
    std::vector<Figure> figures{
        {.name = QStringLiteral("Time from Set area to the selector, ") + session,
         .measured = number(median(all.openings), 1) + unit,
         .counted = QStringLiteral("from the release of the mouse button to the selector's "
                                   "MapNotify; 1280x720, fresh processes; median of %1, longest %2")
                        .arg(all.openings.size())
                        .arg(number(quantile(all.openings, 1), 1) + unit)}};
    for (const auto &[times, kind] : {std::pair(&all.moves, QStringLiteral("Move")),
                                      std::pair(&all.resizes, QStringLiteral("Resize"))}) {
        const QString name = QStringLiteral("%1 of the selector, %2").arg(kind, session);
        const QString counted
            = QStringLiteral("from sending XTEST's motion to the selector's ConfigureNotify at "
                             "another client, 1280x720, each after the answer to the one before; "
                             "%1 steps of all runs, longest %2")
                  .arg(times->size())
                  .arg(number(quantile(*times, 1), 1) + unit);
        figures.push_back(boundedFigure(name, median(*times), medianTarget, unit, counted));
        figures.push_back(boundedFigure(name + QStringLiteral(", 99 %"), quantile(*times, 0.99),
                                        highTarget, unit, counted));
    }
    figures.push_back(boundedFigure(
        QStringLiteral("Steps to a wrong place, ") + session, all.wrong, 0, {},
        QStringLiteral("of these steps, those whose ConfigureNotify has not exactly the geometry "
                       "that the pointer asks for")));
    figures.push_back(boundedFigure(
        QStringLiteral("Frames lost while dragging, ") + session, all.lost, 0, {},
        QStringLiteral("deadlines of a 60 Hz animation of 1500x1000 under the selector, which is "
                       "moved 125 times a second, at which no frame was sent or the one before was "
                       "not drawn yet; sum of %1 runs of %2; %3 in the same time without a drag")
            .arg(extent.runs)
            .arg(extent.phase.count() * PatternAnimation::defaultRate / 1000)
            .arg(all.lostWithout)));
    return figures;
}

Figures measureWith(const Measurement &measurement, bool compositor)
{
    const QString session
        = compositor ? QStringLiteral("with picom") : QStringLiteral("no compositor");
    Dragged all;
    for (int i = 1; i <= measurement.extent.runs; ++i) {
        if (const auto run = measureRun(measurement, compositor, all); !run) {
            return failure(run.error());
        }
        measurement.progress(
            QStringLiteral(
                "drag %1, runs up to %2: open %3 ms, move %4 ms, resize %5 ms, %6 wrong, "
                "%7 frames lost")
                .arg(session, QString::number(i), number(median(all.openings), 1),
                     number(median(all.moves)), number(median(all.resizes)))
                .arg(all.wrong)
                .arg(all.lost));
    }
    return figuresOf(all, session, measurement.extent);
}

} // namespace

Figures measureDragging(const Measurement &measurement)
{
    auto figures = measureWith(measurement, false);
    const auto composited = figures ? measureWith(measurement, true) : figures;
    if (composited) {
        figures->insert(figures->end(), composited->begin(), composited->end());
    }
    return composited ? figures : composited;
}

} // namespace glimmerpane::bench
