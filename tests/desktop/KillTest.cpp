// SPDX-License-Identifier: MIT
#include "tests/desktop/SelectorFixture.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <chrono>
#include <functional>
#include <vector>

using namespace glimmerpane;
using namespace glimmerpane::testing;

namespace
{

constexpr int kills = 100;
constexpr int smallest = 100; ///< coordinate that a round chooses
constexpr int largest = 600; ///< the whole area is on the screen then
constexpr std::chrono::minutes diskPatience(1); ///< others may keep the disk busy

/** The user confirms an area. Nothing is sent before an input is called. */
struct Confirmation {
    std::vector<std::function<void()>> inputs;
    std::vector<CaptureFrame> areas; ///< that it stores, one after the other
    std::function<bool()> isSeen; ///< whether the user can see that it is done
};

/** Sends the inputs. How long it took until it was seen; nothing if the limit came first. */
std::optional<std::chrono::nanoseconds> carryOut(const Confirmation &confirmation,
                                                 std::chrono::nanoseconds limit)
{
    using Clock = std::chrono::steady_clock;
    const auto begin = Clock::now();
    auto next = confirmation.inputs.begin();
    while (Clock::now() - begin < limit) {
        if (next != confirmation.inputs.end()) {
            (*next++)();
        } else if (confirmation.isSeen()) {
            return Clock::now() - begin;
        }
    }
    return std::nullopt;
}

/** A program that is killed while areas are confirmed, and what it must have stored. */
struct KillFixture : SelectorFixture {
    QRandomGenerator random;
    CaptureFrame stored{.x = 400, .y = 300, .width = 600, .height = 400};

    explicit KillFixture(quint32 seed)
        : random(seed)
    {
    }

    int coordinate() { return random.bounded(smallest, largest); }

    /** Another position. Its first digits alone are stored where the typing rests on a slow
     * machine. */
    Confirmation typing(double CaptureFrame::*member, QPoint field)
    {
        const QPoint origin = geometryOf(client, *mainWindow())->topLeft();
        click(field);
        if (!waitFor([&] { return isFocused(field); }, patience)) {
            return {};
        }
        Confirmation result;
        result.isSeen = [this, field] { return !isFocused(field); };
        result.inputs.emplace_back([this] {
            input.pressKey(keys::control);
            input.typeKey('a');
            input.releaseKey(keys::control);
        });
        CaptureFrame area = stored;
        area.*member = 0;
        for (const char digit : QByteArray::number(coordinate())) {
            area.*member = area.*member * 10 + digit - '0';
            result.areas.push_back(area);
            result.inputs.emplace_back(
                [this, digit] { input.typeKey(static_cast<std::uint32_t>(digit)); });
        }
        result.inputs.emplace_back([this, origin] { input.click(origin + places::nothing); });
        return result;
    }

    /** The selector's "Confirm", after the selector was dragged to another place. */
    Confirmation selecting()
    {
        const CaptureFrame area{double(coordinate()), double(coordinate()), 600, 400};
        if (!opensAndMoves(onScreen(stored), onScreen(area))) {
            return {};
        }
        const xcb_window_t window = *selector();
        return {.inputs = {[this] { confirm(); }}, .areas = {area}, .isSeen = [this, window] {
                    return !isViewable(client, window);
                }};
    }
};

} // namespace

class KillTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void storedArea_isTheLastOneConfirmed_whereverAKillHits()
    {
        bool isChosen = false;
        quint32 seed = qEnvironmentVariable("GLIMMERPANE_TEST_SEED").toUInt(&isChosen);
        seed = isChosen ? seed : QRandomGenerator::global()->generate();
        qInfo("GLIMMERPANE_TEST_SEED=%u", seed);
        KillFixture fixture(seed);
        int unchanged = 0;
        int seen = 0;
        for (int round = 0; round < kills; ++round) {
            QVERIFY(fixture.launch(round == 0 ? QStringList(areaOption) : QStringList()));
            fixture.input.setFocus(*fixture.mainWindow());
            const auto first = round % 2 == 0 ? fixture.typing(&CaptureFrame::x, places::fields[0])
                                              : fixture.typing(&CaptureFrame::y, places::fields[1]);
            QVERIFY(!first.areas.empty());
            const auto usual = carryOut(first, diskPatience);
            QVERIFY(usual);
            fixture.stored = first.areas.back();
            QCOMPARE(fixture.savedArea(), fixture.stored);

            const bool isTyped = fixture.random.bounded(2) == 0;
            const auto last = isTyped ? fixture.typing(&CaptureFrame::y, places::fields[1])
                                      : fixture.selecting();
            QVERIFY(!last.areas.empty());
            const auto moment = *usual * fixture.random.bounded(isTyped ? 1.3 : 0.6);
            const bool isSeen
                = carryOut(last, std::chrono::duration_cast<std::chrono::nanoseconds>(moment))
                      .has_value();
            fixture.program.kill();

            const auto found = fixture.savedArea();
            QVERIFY(found);
            const bool isBeingConfirmed = std::ranges::count(last.areas, *found) > 0;
            unchanged += *found == fixture.stored;
            seen += isSeen;
            QVERIFY(isSeen ? *found == last.areas.back()
                           : *found == fixture.stored || isBeingConfirmed);
            fixture.stored = *found;
        }
        qInfo("%d kills: %d before anything was stored, %d after the person saw it done", kills,
              unchanged, seen);
        QVERIFY2(unchanged > 0 && seen < kills, "No kill hit a confirmation");
    }
};

QTEST_APPLESS_MAIN(KillTest)
#include "KillTest.moc"
