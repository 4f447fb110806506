// SPDX-License-Identifier: MIT
#include "rig/Held.h"
#include "rig/PatternAnimation.h"
#include "tests/desktop/SelectorFixture.h"

#include <QDeadlineTimer>
#include <QRandomGenerator>
#include <QTest>

#include <csignal>
#include <span>
#include <vector>

using namespace glimmerpane;
using namespace glimmerpane::testing;

namespace
{

constexpr int cycles = 1000; ///< starts and stops
constexpr int clicks = 10; ///< in each session
constexpr int frameRate = 30;
constexpr CaptureFrame firstFrame{.x = 400, .y = 300, .width = 600, .height = 400};
constexpr QRect origins(QPoint(360, 20), QPoint(670, 600)); ///< beside the main window

struct Bound {
    const char *name;
    double Held::*member;
    double growth; ///< that is allowed from the third to the last quarter of the samples
};

// ASan delays the reuse of what is freed, by default until that is 256 MiB, so memory grows for
// long whatever the program does; ./test --soak gives it 4 MiB. What is left are the books it
// keeps: up to 1.6 MiB were seen from one quarter to the next, but 0.1 without ASan. What nothing
// points to any more it reports itself, at the end.
constexpr Bound bounds[] = {{"KiB", &Held::memory, 3072},
                            {"descriptors", &Held::descriptors, 0},
                            {"threads", &Held::threads, 0},
                            {"resources", &Held::resources, 0},
                            {"bytes of pixmaps", &Held::pixmapBytes, 0}};

/** The least of them: what comes and goes lies above it, and a leak raises it. */
double floorOf(std::span<const Held> samples, double Held::*member)
{
    return std::ranges::min(samples, {}, member).*member;
}

/** The first half is the warm-up. */
bool isSteady(const std::vector<Held> &samples)
{
    const std::size_t quarter = samples.size() / 4;
    bool isSteady = quarter > 0;
    for (const auto &[name, member, allowed] : bounds) {
        const std::span all(samples);
        const double before = floorOf(all.subspan(2 * quarter, quarter), member);
        const double after = floorOf(all.last(quarter), member);
        qInfo("from %.0f to %.0f %s, may grow by %.0f", before, after, name, allowed);
        isSteady = isSteady && after - before <= allowed;
    }
    return isSteady;
}

struct SoakFixture : SelectorFixture {
    QRandomGenerator random{20};
    CaptureFrame stored = firstFrame;

    /** The window goes at once, the session a moment later. */
    bool stops() const
    {
        return stopSharing() && waitFor([this] { return !isCapturing(); }, patience);
    }
    bool startsAndStops() { return startAgain() && stops(); }

    QPoint placeIn(const QRect &rectangle)
    {
        return rectangle.topLeft()
            + QPoint(random.bounded(rectangle.width()), random.bounded(rectangle.height()));
    }

    bool choosesArea()
    {
        const QRect after(placeIn(origins), area.size());
        const bool isConfirmed = random.bounded(2) == 0;
        if (!opensAndMoves(onScreen(stored), after)) {
            return false;
        }
        if (isConfirmed) {
            confirm();
            stored.x = after.x();
            stored.y = screenSize.height() - after.y() - after.height();
        } else {
            cancel();
        }
        return becomes(std::nullopt) && waitFor([this] { return savedArea() == stored; }, patience);
    }

    /** A session with clicks in its area, then another area or none. */
    bool takesTurn()
    {
        if (!startAgain()) {
            return false;
        }
        for (int i = 0; i < clicks; ++i) {
            input.click(placeIn(onScreen(stored)));
        }
        return stops() && choosesArea();
    }
};

} // namespace

class SoakTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void program_holdsNoMore_howeverLongItIsUsed()
    {
        bool isChosen = false;
        const int chosen = qEnvironmentVariableIntValue("GLIMMERPANE_SOAK_MINUTES", &isChosen);
        const std::chrono::minutes time(isChosen ? chosen : 10);
        SoakFixture fixture;
        PatternAnimation pattern(
            required(PatternWindow::open(fixture.server.displayName(), {.rectangle = area})),
            frameRate);
        pattern.start();
        QVERIFY(fixture.launch());

        const auto soak = [&](bool (SoakFixture::*turn)(), int turnsPerSample,
                              const auto &isEnough) {
            std::vector<Held> samples;
            for (int turns = 1; !isEnough(turns); ++turns) {
                if (!(fixture.*turn)()) {
                    return false;
                }
                if (turns % turnsPerSample == 0) {
                    samples.push_back(required(heldBy(fixture.client, fixture.program.pid())));
                    qInfo("turn %d: %s", turns, qPrintable(samples.back().text()));
                }
            }
            return isSteady(samples);
        };
        QVERIFY(soak(&SoakFixture::startsAndStops, 20, [](int turns) { return turns > cycles; }));
        const QDeadlineTimer end(time);
        QVERIFY(soak(&SoakFixture::takesTurn, 1, [&](int) { return end.hasExpired(); }));

        pattern.freeze();
        QVERIFY(fixture.startAgain() && fixture.showsArea(onScreen(fixture.stored)));
        fixture.program.sendSignal(SIGTERM);
        QCOMPARE(fixture.waitForExit(), 0);
    }
};

QTEST_APPLESS_MAIN(SoakTest)
#include "SoakTest.moc"
