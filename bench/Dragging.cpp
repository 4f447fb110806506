// SPDX-License-Identifier: MIT
#include "bench/Measurement.h"
#include "rig/PatternAnimation.h"
#include "rig/WaitFor.h"
#include "rig/XWindows.h"

#include <QDeadlineTimer>

#include <poll.h>
#include <xcb/xtest.h>

namespace glimmerpane::bench
{

namespace
{

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds betweenSteps{8};
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

/** Drags the selector as a person does and sees through another client what becomes of it. */
struct Drag {
    const MeasuredDesktop &desktop;
    const XClient watcher{required(XClient::connect(desktop.server.displayName()))};
    int wrong = 0; ///< answers with another geometry than the step asks for

    double open();
    std::vector<double> timeSteps(bool resizes);
    double lostFrames(PatternAnimation &animation) const;

    void watch(xcb_window_t window, uint32_t events) const
    {
        xcb_change_window_attributes(watcher.get(), window, XCB_CW_EVENT_MASK, &events);
        watcher.sync();
    }
    /** Unlike InputInjector's it does not wait for the server. */
    void sendMotion(QPoint place) const
    {
        const auto &client = desktop.client;
        xcb_test_fake_input(client.get(), XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME, client.root(),
                            static_cast<int16_t>(place.x()), static_cast<int16_t>(place.y()), 0);
        client.flush();
    }
    template<typename Event>
    Reply<Event> next(int type) const
    {
        const QDeadlineTimer deadline(patience);
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
        throw Failure(u"the selector does not answer"_s);
    }
};

/** From the release of the button on "Set area" until the selector is mapped. */
double Drag::open()
{
    const QPoint start = desktop.awaitButton(places::startSharing); // and "Set area" with it
    watch(watcher.root(), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
    desktop.input.moveTo(start + places::setArea - places::startSharing);
    desktop.input.press();
    const auto begin = Clock::now();
    desktop.input.release();
    for (;;) {
        const auto mapped = next<xcb_map_notify_event_t>(XCB_MAP_NOTIFY);
        const double time = millisecondsSince(begin);
        if (mapped->window == desktop.selector()) {
            watch(watcher.root(), XCB_EVENT_MASK_NO_EVENT);
            watch(mapped->window, XCB_EVENT_MASK_STRUCTURE_NOTIFY);
            return time;
        }
    }
}

/** Drags the inside or, with `resizes`, the top left corner. */
std::vector<double> Drag::timeSteps(bool resizes)
{
    const int count = desktop.measurement.extent.changes / 10 * stepsPerRound;
    const QPoint grip = measuredArea.topLeft() + (resizes ? QPoint() : insideGrip);
    desktop.input.moveTo(grip);
    desktop.input.press();
    std::vector<double> times;
    for (int step = 1; step <= count; ++step) {
        const QPoint offset = offsetAt(step);
        const auto begin = Clock::now();
        sendMotion(grip + offset);
        const auto seen = next<xcb_configure_notify_event_t>(XCB_CONFIGURE_NOTIFY);
        times.push_back(millisecondsSince(begin));
        const QRect expected = resizes
            ? QRect(measuredArea.topLeft() + offset, measuredArea.bottomRight())
            : measuredArea.translated(offset);
        wrong += QRect(seen->x, seen->y, seen->width, seen->height) != expected;
    }
    desktop.input.release();
    return times;
}

double Drag::lostFrames(PatternAnimation &animation) const
{
    const auto time = desktop.measurement.extent.phase;
    const auto lost = [&] { return animation.missedDeadlines() + animation.lateFrames(); };
    animation.start();
    desktop.measurement.rest(time);
    const uint32_t before = lost();
    const QPoint grip = measuredArea.topLeft() + insideGrip;
    desktop.input.moveTo(grip);
    desktop.input.press();
    int step = 0;
    for (auto due = Clock::now(), end = due + time; due < end; due += betweenSteps) {
        std::this_thread::sleep_until(due);
        sendMotion(grip + offsetAt(++step));
    }
    const uint32_t during = lost() - before;
    animation.freeze();
    desktop.measurement.tell(
        u"%1 frames lost without a drag, %2 with one"_s.arg(before).arg(during));
    const QRect there = measuredArea.translated(offsetAt(step));
    require(
        waitFor([&] { return geometryOf(desktop.client, *desktop.selector()) == there; }, patience),
        "the selector does not follow the drag");
    return during;
}

std::vector<double> measureRun(const Measurement &measurement, WindowManager manager)
{
    MeasuredDesktop desktop(measurement, manager);
    desktop.startProgram(false);
    Drag drag{.desktop = desktop};
    // The animation comes later than the main window has painted its buttons, as its blue could
    // pass for that of one.
    desktop.awaitButton(places::startSharing);
    PatternAnimation animation(
        required(PatternWindow::open(desktop.server.displayName(), {.rectangle = animated})));
    const double opening = drag.open();
    const auto moves = drag.timeSteps(false);
    const auto resizes = drag.timeSteps(true);
    return {opening,
            median(moves),
            quantile(moves, 0.99),
            median(resizes),
            quantile(resizes, 0.99),
            static_cast<double>(drag.wrong),
            drag.lostFrames(animation)};
}

std::vector<Figure> measureWith(const Measurement &measurement, WindowManager manager,
                                const QString &session)
{
    std::vector<Figure> figures{
        {.name = u"Time from Set area to the selector, "_s + session,
         .unit = u" ms"_s,
         .counted = u"from the release of the mouse button to the selector's MapNotify; 1280x720, "
                    "fresh processes"_s,
         .decimals = 1}};
    for (const char *kind : {"Move", "Resize"}) {
        const QString name = u"%1 of the selector, %2"_s.arg(QString::fromLatin1(kind), session);
        const QString counted
            = u"from sending XTEST's motion to the selector's ConfigureNotify at another client, "
              "1280x720, each after the answer to the one before; %1 steps a run"_s.arg(
                  measurement.extent.changes / 10 * stepsPerRound);
        figures.push_back({.name = name, .unit = u" ms"_s, .counted = counted, .atMost = 2});
        figures.push_back(
            {.name = name + u", 99 %"_s, .unit = u" ms"_s, .counted = counted, .atMost = 8});
    }
    figures.push_back({.name = u"Steps to a wrong place, "_s + session,
                       .counted = u"of these steps, those whose ConfigureNotify has not exactly "
                                  "the geometry that the pointer asks for"_s,
                       .decimals = 0,
                       .atMost = 0,
                       .pick = sumOf});
    figures.push_back({.name = u"Frames lost while dragging, "_s + session,
                       .counted = u"deadlines of a 60 Hz animation of 1500x1000 under the "
                                  "selector, which is moved 125 times a second, at which no frame "
                                  "was sent or the one before was not drawn yet"_s,
                       .decimals = 0,
                       .atMost = 0,
                       .pick = sumOf});
    return measurement.repeat(figures, [&] { return measureRun(measurement, manager); });
}

} // namespace

std::vector<Figure> measureDragging(const Measurement &measurement)
{
    auto figures = measureWith(measurement, WindowManager::Openbox, u"no compositor"_s);
    std::ranges::copy(measureWith(measurement, WindowManager::OpenboxAndPicom, u"with picom"_s),
                      std::back_inserter(figures));
    return figures;
}

} // namespace glimmerpane::bench
