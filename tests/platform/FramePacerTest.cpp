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
    void grid_movesToTheSource_whenTheyDiffer();
    void rate_staysAtTheLimit_whenTheSourceIsFaster();
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
    pacer.advance(start, start);
    const auto firstDue = pacer.due();
    for (const int milliseconds : late) {
        const auto now = pacer.due() + std::chrono::milliseconds(milliseconds);
        pacer.advance(now, now);
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
            pacer.advance(now, now);
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

void FramePacerTest::grid_movesToTheSource_whenTheyDiffer()
{
    FramePacer pacer(interval);
    pacer.advance(start, start);
    // A source of the same rate, whose frames come shortly after ours were made.
    FramePacer::TimePoint made;
    auto wanted = start + 1ms;
    for (int i = 0; i < 100; ++i, wanted += interval) {
        made = std::max(wanted, pacer.due());
        pacer.advance(made, wanted);
    }
    QVERIFY(made - (wanted - interval) < 100us);
}

void FramePacerTest::rate_staysAtTheLimit_whenTheSourceIsFaster()
{
    FramePacer pacer(interval);
    int frames = 0;
    for (auto wanted = start; wanted < start + 10000 * interval; ++frames) {
        const auto made = std::max(wanted, pacer.due());
        pacer.advance(made, wanted);
        wanted = made + interval / 3;
    }
    QVERIFY2(frames >= 10000 && frames <= 10003, qPrintable(QString::number(frames)));
}

QTEST_APPLESS_MAIN(FramePacerTest)
#include "FramePacerTest.moc"
