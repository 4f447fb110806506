// SPDX-License-Identifier: MIT
#include "tests/desktop/SelectorFixture.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTest>

#include <chrono>
#include <functional>
#include <vector>

using namespace glimmerpane;
using namespace glimmerpane::testing;

namespace
{

constexpr int kills = 100;
constexpr std::chrono::minutes diskPatience(1); ///< others may keep the disk busy

/** A program that is killed while positions are typed, and what it must have stored. */
struct KillFixture : SelectorFixture {
    QRandomGenerator random;
    CaptureFrame stored{.x = 400, .y = 300, .width = 600, .height = 400};

    explicit KillFixture(quint32 seed)
        : random(seed)
    {
    }

    /** One that is typed into the first field, whose first digits alone may be stored, too. */
    QByteArray position() { return QByteArray::number(random.bounded(100, 600)); }

    /**
     * Types the position and clicks beside the field, which loses the focus once it is stored. How
     * long that took; nothing if the limit came first.
     */
    std::optional<std::chrono::nanoseconds> typePosition(const QByteArray &position,
                                                         std::chrono::nanoseconds limit) const
    {
        const QPoint field = places::fields[0];
        std::vector<std::function<void()>> inputs{[this] {
            input.pressKey(keys::control);
            input.typeKey('a');
            input.releaseKey(keys::control);
        }};
        for (const char digit : position) {
            inputs.emplace_back([this, digit] { input.typeKey(std::uint32_t(digit)); });
        }
        inputs.emplace_back([this] { ProgramFixture::click(places::nothing); });
        ProgramFixture::click(field);
        waitFor([&] { return isFocused(field); }, patience);

        using Clock = std::chrono::steady_clock;
        const auto begin = Clock::now();
        auto next = inputs.begin();
        while (Clock::now() - begin < limit) {
            if (next != inputs.end()) {
                (*next++)();
            } else if (!isFocused(field)) {
                return Clock::now() - begin;
            }
        }
        return std::nullopt;
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
            const QByteArray first = fixture.position();
            const auto usual = fixture.typePosition(first, diskPatience);
            QVERIFY(usual);
            fixture.stored.x = first.toDouble();
            QCOMPARE(fixture.savedArea(), fixture.stored);

            const QByteArray last = fixture.position();
            const auto moment = *usual * fixture.random.bounded(1.3);
            const bool isSeen
                = fixture
                      .typePosition(last,
                                    std::chrono::duration_cast<std::chrono::nanoseconds>(moment))
                      .has_value();
            fixture.program.kill();

            const auto found = fixture.savedArea();
            QVERIFY(found);
            unchanged += *found == fixture.stored;
            seen += isSeen;
            const bool isOld = *found == fixture.stored;
            fixture.stored.x = found->x;
            QCOMPARE(*found, fixture.stored);
            QVERIFY(isSeen ? found->x == last.toDouble()
                           : isOld || last.startsWith(QByteArray::number(found->x)));
        }
        qInfo("%d kills: %d before anything was stored, %d after the person saw it done", kills,
              unchanged, seen);
        QVERIFY2(unchanged > 0 && seen < kills, "No kill hit a confirmation");
    }

    void areasWithNames_areAllKept_whereverAKillHits()
    {
        ProgramFixture fixture;
        fixture.environment.remove(QStringLiteral("DISPLAY"));
        QDir().mkpath(QFileInfo(fixture.settingsFile()).path());
        QFile settings(fixture.settingsFile());
        QVERIFY(settings.open(QIODevice::WriteOnly));
        settings.write("captureFrame=\"@ByteArray({\\\"x\\\":1,\\\"y\\\":2,\\\"width\\\":3,"
                       "\\\"height\\\":4})\"\n");
        settings.close();
        const CaptureFrame current{1, 2, 3, 4};
        QCOMPARE(fixture.launchAgain({QStringLiteral("--save-as=kept")}), 0);
        const auto names = [&] {
            QByteArray said;
            return fixture.launchAgain({QStringLiteral("--areas")}, &said) == 0 ? said
                                                                                : QByteArray();
        };
        int unchanged = 0;
        QElapsedTimer usual;
        usual.start();
        fixture.start({QStringLiteral("--save-as=new")});
        QCOMPARE(fixture.waitForExit(), 0);
        // Follows the moment at which it is stored, which differs with the load of the machine.
        auto moment = double(usual.nsecsElapsed());
        for (int round = 0; round < kills; ++round) {
            QCOMPARE(fixture.launchAgain({QStringLiteral("--forget=new")}), 0);
            fixture.start({QStringLiteral("--save-as=new")});
            const double spread = 0.8 + QRandomGenerator::global()->bounded(0.4);
            const QDeadlineTimer end(std::chrono::nanoseconds(qint64(moment * spread)),
                                     Qt::PreciseTimer);
            while (!end.hasExpired() && fixture.program.isRunning()) { }
            fixture.program.kill();
            const QByteArray found = names();
            QVERIFY2(found.startsWith("1,2,3x4 kept\n"), found);
            QCOMPARE(fixture.savedArea(), current);
            const bool isStored = found.contains("new");
            unchanged += !isStored;
            moment *= isStored ? 0.95 : 1.05;
            QCOMPARE(fixture.launchAgain({QStringLiteral("--save-as=new")}), 0);
        }
        qInfo("%d kills: %d before anything was stored", kills, unchanged);
        QVERIFY2(unchanged > 0 && unchanged < kills, "No kill hit the end of a change");
    }
};

QTEST_APPLESS_MAIN(KillTest)
#include "KillTest.moc"
