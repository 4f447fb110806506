// SPDX-License-Identifier: MIT
#include "bench/Measurement.h"
#include "bench/PatternAnimation.h"
#include "bench/SharedDesktop.h"
#include "bench/Statistics.h"
#include "tests/support/InputInjector.h"
#include "tests/support/XWindows.h"

#include <QDeadlineTimer>

#include <algorithm>
#include <poll.h>

namespace glimmerpane::bench
{

namespace
{

using testing::failure;
using testing::Reply;
using Clock = std::chrono::steady_clock;

constexpr double medianTarget = 2; ///< milliseconds
constexpr double highTarget = 8; ///< milliseconds
constexpr int openings = 5; ///< of the selector in one run
constexpr std::chrono::milliseconds betweenSteps{8};
constexpr std::chrono::seconds answerLimit{5};
constexpr QRect smallArea(1150, 470, 640, 360); ///< stays within the animation while dragged
constexpr QPoint insideGrip(60, 60); ///< from its top left corner; off the edges and the buttons
constexpr QPoint cancelButton(0, 15); ///< from the middle
constexpr int stepsPerRound = 50;

/** Up left and back again, so that every step goes to another place and a round ends at home. */
QPoint offsetAt(int step)
{
    constexpr int half = stepsPerRound / 2;
    return QPoint(-6, -4) * (half - std::abs(half - step % stepsPerRound));
}

/** The selector on a display, and a client of its own that sees what becomes of it. */
struct Selector {
    SharedDesktop shared;
    testing::XClient watcher;
    QRect area;
    xcb_window_t window = XCB_WINDOW_NONE;

    const testing::XClient &client() const { return shared.desktop->client(); }
    void watch(xcb_window_t watched, uint32_t events) const
    {
        xcb_change_window_attributes(watcher.get(), watched, XCB_CW_EVENT_MASK, &events);
        watcher.sync();
    }
    /** The next event of this type; null if none comes. */
    template<typename Event>
    Reply<Event> next(int type) const
    {
        const QDeadlineTimer deadline(answerLimit);
        while (!deadline.hasExpired() && !watcher.isBroken()) {
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
    void sendMotion(QPoint place) const
    {
        xcb_test_fake_input(client().get(), XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME, client().root(),
                            static_cast<int16_t>(place.x()), static_cast<int16_t>(place.y()), 0);
        client().flush();
    }
};

double millisecondsSince(Clock::time_point begin)
{
    return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
}

Result<Selector> startProgram(const Measurement &measurement, std::unique_ptr<Desktop> desktop,
                              const QRect &area)
{
    auto watcher = testing::XClient::connect(desktop->displayName());
    auto program = Program::start(*desktop, {.executable = measurement.executable, .area = area});
    if (!watcher || !program) {
        return failure(watcher ? program.error() : watcher.error());
    }
    Selector selector{.shared = {.desktop = std::move(desktop), .program = std::move(*program)},
                      .watcher = std::move(*watcher),
                      .area = area};
    const auto placed = selector.shared.program->placeMainWindow(measuredMainWindow, measuredArea);
    return placed ? Result<Selector>(std::move(selector)) : failure(placed.error());
}

/** Milliseconds from the release of the mouse button until the selector is on the display. */
Result<double> open(Selector &selector)
{
    std::optional<QPoint> button;
    selector.shared.desktop->waitFor(
        [&] { return (button = selector.shared.program->setAreaButton()).has_value(); },
        answerLimit);
    if (!button) {
        return failure(QStringLiteral("Set area cannot be pressed"));
    }
    selector.watch(selector.client().root(), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
    const testing::InputInjector person(selector.client());
    person.moveTo(*button);
    person.press();
    const auto begin = Clock::now();
    person.release();
    while (const auto mapped = selector.next<xcb_map_notify_event_t>(XCB_MAP_NOTIFY)) {
        const double time = millisecondsSince(begin);
        if (testing::titleOf(selector.client(), mapped->window) == selectorTitle()) {
            selector.window = mapped->window;
            selector.watch(selector.client().root(), XCB_EVENT_MASK_NO_EVENT);
            selector.watch(selector.window, XCB_EVENT_MASK_STRUCTURE_NOTIFY);
            return time;
        }
    }
    return failure(QStringLiteral("no selector came after the click on Set area"));
}

void cancel(const Selector &selector)
{
    const QPoint middle(selector.area.width() / 2, selector.area.height() / 2);
    testing::InputInjector(selector.client())
        .click(selector.area.topLeft() + middle + cancelButton);
}

struct Steps {
    std::vector<double> moves; ///< milliseconds
    std::vector<double> resizes;
    std::vector<double> opened;
    int wrong = 0; ///< answers with another geometry than the step asks for
};

/** Drags the selector's inside or, with `resizes`, its top left corner. */
Result<void> timeSteps(const Selector &selector, int count, bool resizes, Steps &steps)
{
    const testing::InputInjector person(selector.client());
    const QRect &area = selector.area;
    const QPoint grip = area.topLeft() + (resizes ? QPoint() : insideGrip);
    person.moveTo(grip);
    person.press();
    for (int step = 1; step <= count; ++step) {
        const QPoint offset = offsetAt(step);
        const auto begin = Clock::now();
        selector.sendMotion(grip + offset);
        const auto seen = selector.next<xcb_configure_notify_event_t>(XCB_CONFIGURE_NOTIFY);
        if (!seen || selector.shared.desktop->stopRequested()) {
            return failure(QStringLiteral("no answer to step %1 of a drag").arg(step));
        }
        (resizes ? steps.resizes : steps.moves).push_back(millisecondsSince(begin));
        const QRect expected = resizes ? QRect(area.topLeft() + offset, area.bottomRight())
                                       : area.translated(offset);
        steps.wrong += QRect(seen->x, seen->y, seen->width, seen->height) != expected;
    }
    person.release();
    return {};
}

Result<Steps> measureSteps(const Measurement &measurement)
{
    auto desktop = startDesktop(measurement);
    auto selector = desktop ? startProgram(measurement, std::move(*desktop), measuredArea)
                            : failure(desktop.error());
    if (!selector) {
        return failure(selector.error());
    }
    Steps steps;
    for (int opening = 1; opening <= openings; ++opening) {
        const auto time = open(*selector);
        if (!time) {
            return failure(time.error());
        }
        steps.opened.push_back(*time);
        if (opening < openings) {
            cancel(*selector);
        }
    }
    const int half = measurement.extent.changes / 10 * stepsPerRound;
    for (const bool resizes : {false, true}) {
        if (const auto timed = timeSteps(*selector, half, resizes, steps); !timed) {
            return failure(timed.error());
        }
    }
    return steps;
}

/** Frames of the animation that were lost in a time without and in one with a drag. */
struct Losses {
    uint32_t still = 0;
    uint32_t dragging = 0;
    int steps = 0;
};

Result<Losses> measureLosses(const Measurement &measurement, bool compositor)
{
    auto desktop = startDesktop(measurement, compositor);
    auto window = desktop ? PatternWindow::open((*desktop)->displayName(), measuredArea)
                          : failure(desktop.error());
    if (!window) {
        return failure(window.error());
    }
    PatternAnimation animation(std::move(*window));
    const auto lost = [&] { return animation.missedDeadlines() + animation.lateFrames(); };
    auto selector = startProgram(measurement, std::move(*desktop), smallArea);
    const auto opened = selector ? open(*selector) : failure(selector.error());
    if (!opened) {
        return failure(opened.error());
    }
    animation.start();
    Losses losses;
    const uint32_t atStart = lost();
    if (!selector->shared.desktop->rest(measurement.extent.phase)) {
        return failure(QStringLiteral("stopped"));
    }
    const uint32_t beforeDrag = lost();
    const testing::InputInjector person(selector->client());
    const QPoint grip = smallArea.topLeft() + insideGrip;
    person.moveTo(grip);
    person.press();
    for (auto due = Clock::now(), end = due + measurement.extent.phase; due < end;
         due += betweenSteps) {
        std::this_thread::sleep_until(due);
        selector->sendMotion(grip + offsetAt(++losses.steps));
    }
    losses.still = beforeDrag - atStart;
    losses.dragging = lost() - beforeDrag;
    const auto isThere = [&] {
        return testing::geometryOf(selector->client(), selector->window)
            == smallArea.translated(offsetAt(losses.steps));
    };
    if (!selector->shared.desktop->waitFor(isThere, answerLimit)) {
        return failure(QStringLiteral("the selector does not follow the drag"));
    }
    return losses;
}

std::vector<Figure> stepFigures(const std::vector<Steps> &runs)
{
    Steps all;
    for (const Steps &run : runs) {
        all.moves.insert(all.moves.end(), run.moves.begin(), run.moves.end());
        all.resizes.insert(all.resizes.end(), run.resizes.begin(), run.resizes.end());
        all.opened.insert(all.opened.end(), run.opened.begin(), run.opened.end());
        all.wrong += run.wrong;
    }
    const QString unit = QStringLiteral(" ms");
    std::vector<Figure> figures{
        {.name = QStringLiteral("Time from Set area to the selector"),
         .measured = number(median(all.opened), 1) + unit,
         .counted = QStringLiteral("from the release of the mouse button on Set area to the "
                                   "selector's MapNotify; 1280x720; median of %1, longest %2 ms")
                        .arg(all.opened.size())
                        .arg(number(quantile(all.opened, 1), 1))}};
    for (const auto &[times, kind] : {std::pair(&all.moves, QStringLiteral("move")),
                                      std::pair(&all.resizes, QStringLiteral("resize"))}) {
        const QString name = QStringLiteral("Drag step of the selector, %1").arg(kind);
        const QString counted
            = QStringLiteral("from sending XTEST's motion to the selector's ConfigureNotify at "
                             "another client; 1280x720, each step after the answer to the one "
                             "before; %1 steps, longest %2 ms")
                  .arg(times->size())
                  .arg(number(quantile(*times, 1)));
        figures.push_back(boundedFigure(name + QStringLiteral(", median"), median(*times),
                                        medianTarget, unit, counted));
        figures.push_back(boundedFigure(name + QStringLiteral(", 99 %"), quantile(*times, 0.99),
                                        highTarget, unit, counted));
    }
    figures.push_back(boundedFigure(
        QStringLiteral("Drag steps to a wrong place"), all.wrong, 0, {},
        QStringLiteral("ConfigureNotify events of these %1 steps with another geometry than the "
                       "one that the pointer asks for")
            .arg(all.moves.size() + all.resizes.size())));
    return figures;
}

} // namespace

Figures measureDragging(const Measurement &measurement)
{
    const auto runs = repeat(measurement, measureSteps, [](int i, const Steps &run) {
        return QStringLiteral("drag steps %1: open %2 ms, move %3 ms, 99 % %4 ms, resize %5 ms, "
                              "99 % %6 ms, %7 wrong")
            .arg(i)
            .arg(number(median(run.opened), 1), number(median(run.moves)),
                 number(quantile(run.moves, 0.99)), number(median(run.resizes)),
                 number(quantile(run.resizes, 0.99)))
            .arg(run.wrong);
    });
    if (!runs) {
        return failure(runs.error());
    }
    auto figures = stepFigures(*runs);
    for (const bool compositor : {false, true}) {
        const QString session
            = compositor ? QStringLiteral("with picom") : QStringLiteral("no compositor");
        Losses all;
        for (int i = 1; i <= measurement.extent.runs; ++i) {
            const auto losses = measureLosses(measurement, compositor);
            if (!losses) {
                return failure(losses.error());
            }
            measurement.progress(QStringLiteral("drag %1 %2: %3 frames lost, %4 without a drag")
                                     .arg(session)
                                     .arg(i)
                                     .arg(losses->dragging)
                                     .arg(losses->still));
            all.dragging += losses->dragging;
            all.still += losses->still;
        }
        const auto frames = measurement.extent.phase.count() * PatternAnimation::defaultRate / 1000;
        figures.push_back(boundedFigure(
            QStringLiteral("Frames lost while dragging, %1").arg(session), all.dragging, 0, {},
            QStringLiteral(
                "deadlines of a 60 Hz animation of 1280x720 under the selector (640x360, "
                "moved 125 times a second) at which no frame was sent or the server had "
                "not drawn the one before; sum of %1 runs of %2 frames; %3 in the same "
                "time without a drag")
                .arg(measurement.extent.runs)
                .arg(frames)
                .arg(all.still)));
    }
    return figures;
}

} // namespace glimmerpane::bench
