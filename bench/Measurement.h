// SPDX-License-Identifier: MIT
#pragma once

#include "bench/Report.h"
#include "rig/NumberedAnimation.h"
#include "rig/OutputReader.h"
#include "rig/ProgramFixture.h"

#include <functional>
#include <stop_token>

namespace glimmerpane::bench
{

/** How much to measure. */
struct Extent {
    int runs = 5; ///< of each figure; the table shows their median
    std::chrono::milliseconds phase{4000}; ///< of counting frames and processor time
    std::chrono::milliseconds stillPhase{10000}; ///< of watching an unchanging screen
    int changes = 100; ///< isolated changes in one run
    int cycles = 200; ///< of starting and stopping in one process
};

/** What every measurement is given. Each throws a Failure where it cannot go on. */
struct Measurement {
    QString executable; ///< Glimmerpane's
    Extent extent{};
    QDir folder{}; ///< for what a measurement writes besides its figures
    std::stop_token stop{};

    /** Tells a person what happens now. */
    void tell(const QString &text) const;
    /** Lets time pass, rarely awake, so that it disturbs nothing; fails when asked to stop. */
    void rest(std::chrono::milliseconds time) const;
    /** The figures with what became of their values in all runs; a run gives one for each. */
    std::vector<Figure> repeat(std::vector<Figure> figures,
                               const std::function<std::vector<double>()> &run) const;
};

/** A display of 1920x1080 with an area of 1280x720 to share and the main window beside it. */
inline constexpr QRect measuredArea(600, 180, 1280, 720);
inline constexpr QPoint measuredMainWindow(60, 180);
inline constexpr QPoint pointerInArea(1500, 640);

/** What was used in a time while the numbered animation is on the screen. */
struct Spent {
    double seconds = 0;
    double server = 0; ///< milliseconds of processor time
    double compositor = 0; ///< on Wayland
    double program = 0;
    double wakeUps = 0; ///< of the program
    double sourceFrames = 0;
};

/** What each shown frame cost, in milliseconds of processor time. */
struct FrameCost {
    double shown = 0; ///< frames
    double program = 0;
    double server = 0; ///< beyond the animation's own share
    double compositor = 0; ///< the same, on Wayland
};

/** A fresh display on which something is measured. */
struct MeasuredDesktop : ProgramFixture {
    explicit MeasuredDesktop(const Measurement &given,
                             WindowManager manager = WindowManager::Openbox,
                             QSize screen = {1920, 1080});

    const Measurement &measurement;

    /** The program with the main window beside the area and the pointer inside. */
    void startProgram(bool share = true);
    /** Over the area, once it moves. */
    ChildProcess animate(const AnimationOptions &options = {.area = measuredArea}) const;
    CapturedWindow screen() const;
    /** The output's, once it follows the animation. */
    CapturedWindow movingOutput() const;

    /** Lets the time pass; a pid of 0 stands for no program, the corner is the animation's. */
    Spent spend(pid_t pid, std::chrono::milliseconds time,
                QPoint corner = measuredArea.topLeft()) const;
};

/**
 * The animation's own share is known from the time before and the time after, so that a machine
 * that changes its speed favours neither side.
 */
FrameCost costOf(const Spent &spent, const SeenFrames &seen, const Spent &aloneBefore,
                 const Spent &aloneAfter);

/** Milliseconds until the condition holds, which is looked at without a pause. */
double timeUntil(const std::function<bool()> &condition,
                 std::chrono::steady_clock::time_point begin, const char *otherwise);

std::vector<Figure> measureFullMotion(const Measurement &measurement);
std::vector<Figure> measureStillScreen(const Measurement &measurement);
std::vector<Figure> measureLatencies(const Measurement &measurement);
std::vector<Figure> measureFirstFrame(const Measurement &measurement);
std::vector<Figure> measureStartUp(const Measurement &measurement);
std::vector<Figure> measureCycles(const Measurement &measurement);
std::vector<Figure> measureDragging(const Measurement &measurement);
std::vector<Figure> measureClicks(const Measurement &measurement);
std::vector<Figure> measurePage(const Measurement &measurement);
std::vector<Figure> measureGnome(const Measurement &measurement);
std::vector<Figure> measurePeers(const Measurement &measurement);

} // namespace glimmerpane::bench
