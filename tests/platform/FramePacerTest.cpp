// SPDX-License-Identifier: MIT
#include "platform/FramePacer.h"

#include <QList>
#include <QTest>

#include <random>

using namespace glimmerpane;
using namespace std::chrono_literals;

namespace
{

constexpr auto interval = 16ms;
constexpr FramePacer::TimePoint start(std::chrono::hours(1));

} // namespace

class FramePacerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void frame_isDueAtOnce_whenItIsTheFirst();
    void nextFrame_staysOnTheGrid_data();
    void nextFrame_staysOnTheGrid();
    void frames_keepTheRate_whateverTheirTimes();
};

void FramePacerTest::frame_isDueAtOnce_whenItIsTheFirst()
{
    QVERIFY(FramePacer(interval).isDue(start));
}

void FramePacerTest::nextFrame_staysOnTheGrid_data()
{
    QTest::addColumn<QList<int>>("late"); // ms by which each frame comes after it was due
    QTest::addColumn<int>("due"); // ms from the first frame's due time to the next one's
    QTest::newRow("in time") << QList{0} << 16;
    QTest::newRow("in time, again") << QList{0, 0, 0} << 48;
    QTest::newRow("late") << QList{5} << 16;
    QTest::newRow("late by half an interval") << QList{8} << 16;
    QTest::newRow("late, then in time") << QList{8, 0} << 32;
    QTest::newRow("each a little late") << QList{1, 1, 1, 1} << 64;
    QTest::newRow("late by an interval") << QList{16} << 24;
    QTest::newRow("after a pause") << QList{1000} << 1008;
    QTest::newRow("after a pause, in time") << QList{1000, 0} << 1024;
}

void FramePacerTest::nextFrame_staysOnTheGrid()
{
    QFETCH(QList<int>, late);
    QFETCH(int, due);
    FramePacer pacer(interval);
    pacer.advance(start);
    const auto firstDue = pacer.due();
    for (const int milliseconds : late) {
        pacer.advance(pacer.due() + std::chrono::milliseconds(milliseconds));
    }
    QCOMPARE((pacer.due() - firstDue) / 1ms, due);
    QVERIFY(pacer.isDue(pacer.due()));
    QVERIFY(!pacer.isDue(pacer.due() - 1ns));
}

void FramePacerTest::frames_keepTheRate_whateverTheirTimes()
{
    std::mt19937 random(7);
    std::vector<FramePacer::TimePoint> frames;
    FramePacer pacer(interval);
    for (auto now = start; frames.size() < 2000;
         now += std::chrono::microseconds(random() % 9000)) {
        now += random() % 50 == 0 ? 100ms : 0ms;
        if (pacer.isDue(now)) {
            pacer.advance(now);
            frames.push_back(now);
            QVERIFY(pacer.due() <= now + interval);
        }
    }
    for (std::size_t count = 1; count < 20; ++count) {
        for (std::size_t at = count; at < frames.size(); ++at) {
            QVERIFY(frames[at] - frames[at - count] >= count * interval - interval / 2);
        }
    }
}

QTEST_APPLESS_MAIN(FramePacerTest)
#include "FramePacerTest.moc"
