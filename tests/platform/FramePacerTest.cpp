// SPDX-License-Identifier: MIT
#include "platform/FramePacer.h"

#include <QTest>

using namespace glimmerpane;
using namespace std::chrono_literals;

namespace
{

constexpr auto interval = 16ms;
constexpr FramePacer::TimePoint start(1h);

} // namespace

class FramePacerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nextFrame_staysOnTheGrid()
    {
        // By how much each frame comes late, and when the next is due after the first one was, in
        // ms.
        using Row = std::pair<std::vector<int>, int>;
        for (const auto &[late, due] :
             {Row({0, 0, 0}, 48), Row({8}, 16), Row({8, 0}, 32), Row({1, 1, 1, 1}, 64),
              Row({16}, 24), Row({1000, 0}, 1024)}) {
            FramePacer pacer(interval);
            QVERIFY(pacer.due() <= start);
            pacer.advance(start, start);
            const auto firstDue = pacer.due();
            for (const int milliseconds : late) {
                const auto now = pacer.due() + milliseconds * 1ms;
                pacer.advance(now, now);
            }
            QCOMPARE((pacer.due() - firstDue) / 1ms, due);
        }
    }

    void grid_movesToTheSource_butGivesNoExtraFrames()
    {
        // A source of the same rate that draws shortly after our frames, and a faster one.
        for (const auto period : {interval, interval / 3}) {
            FramePacer pacer(interval);
            pacer.advance(start, start);
            int frames = 0;
            std::chrono::nanoseconds held;
            for (auto wanted = start + 1ms; wanted < start + 10000 * interval; ++frames) {
                const auto made = std::max(wanted, pacer.due());
                held = made - wanted;
                pacer.advance(made, wanted);
                while (wanted <= made) {
                    wanted += period;
                }
            }
            QVERIFY2(frames >= 9999 && frames <= 10003, qPrintable(QString::number(frames)));
            QVERIFY(period < interval || held < 100us);
        }
    }

    void pointer_waitsForThePicture_whileThatMovesAsFast()
    {
        // The time between the picture's frames, and when the pointer may have one of its own, in
        // ms.
        for (const auto &[between, due] : {std::pair(16, 24), {19, 24}, {20, 8}, {33, 8}}) {
            FramePacer pacer(interval);
            pacer.pictureShown(start - between * 1ms);
            pacer.advance(start - interval, start - interval);
            pacer.advance(pacer.due(), pacer.due());
            pacer.pictureShown(start);
            QCOMPARE((std::max(pacer.pointerDue(), start) - start) / 1ms, due);
        }
    }
};

QTEST_APPLESS_MAIN(FramePacerTest)
#include "FramePacerTest.moc"
