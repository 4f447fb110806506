// SPDX-License-Identifier: MIT
#include "rig/ProgramFixture.h"
#include "tests/desktop/AccessibilityBus.h"

#include <QTest>

using namespace glimmerpane;
using namespace glimmerpane::testing;

namespace
{

// AtspiRole and AtspiStateType of AT-SPI 2.
namespace roles
{
constexpr unsigned alert = 2;
constexpr unsigned frame = 23;
constexpr unsigned label = 29;
constexpr unsigned pushButton = 43;
constexpr unsigned text = 61;
} // namespace roles
namespace states
{
constexpr unsigned editable = 7;
constexpr unsigned enabled = 8;
constexpr unsigned focusable = 11;
constexpr unsigned sensitive = 24;
} // namespace states

const QStringList fields{QStringLiteral("Position X"), QStringLiteral("Position Y"),
                         QStringLiteral("Width"), QStringLiteral("Height")};

// The display is 1280 x 1024 pixels, so this is its rectangle (40, 604) to (360, 844).
constexpr QRect area(40, 604, 320, 240);
constexpr CaptureFrame frame{.x = 40, .y = 180, .width = 320, .height = 240};
const QStringList numbers{QStringLiteral("40"), QStringLiteral("180"), QStringLiteral("320"),
                          QStringLiteral("240")};

/** The program as a screen reader has it. */
struct ReadProgram : ProgramFixture {
    explicit ReadProgram(const QStringList &arguments = {})
        : ProgramFixture(WindowManager::Openbox)
        , bus(server)
    {
        environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), bus.address());
        start(arguments);
    }

    std::optional<AccessibleObject> find(unsigned role, const QString &name) const
    {
        return bus.find(role, name);
    }

    /** Waits for it; nothing where it does not come. */
    std::optional<AccessibleObject> await(unsigned role, const QString &name) const
    {
        std::optional<AccessibleObject> found;
        waitFor([&] { return (found = find(role, name)).has_value(); }, patience);
        return found;
    }

    QString usableButtons() const
    {
        QStringList usable;
        for (const char *name :
             {"Start sharing", "Set area", "Reset area", "Stop sharing", "Minimize", "Close"}) {
            const auto button = find(roles::pushButton, QLatin1String(name));
            if (button && button->hasState(states::enabled)
                && button->hasState(states::sensitive)) {
                usable.append(QLatin1String(name));
            }
        }
        return usable.join(QStringLiteral(", "));
    }
    bool becomesUsable(const QString &buttons) const
    {
        return waitFor([&] { return usableButtons() == buttons; }, patience);
    }

    bool pressButton(const QString &name) const
    {
        const auto button = find(roles::pushButton, name);
        return button && button->press();
    }

    const AccessibilityBus bus;
};

} // namespace

class AccessibilityTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void screenReader_findsAndUsesEverything()
    {
        ReadProgram program;
        const QString idle = QStringLiteral("Start sharing, Set area, Reset area, Minimize, Close");
        QVERIFY(program.await(roles::frame, QStringLiteral("Glimmerpane")));
        QVERIFY(program.becomesUsable(idle));
        for (const char *line : {"Glimmerpane share", "https://glimmerpane.example"}) {
            QVERIFY2(program.find(roles::label, QLatin1String(line)), line);
        }
        for (int i = 0; i < fields.size(); ++i) {
            const auto field = program.find(roles::text, fields[i]);
            QVERIFY2(field, qPrintable(fields[i]));
            QCOMPARE(field->labels(), QStringList(fields[i]));
            for (const unsigned state :
                 {states::editable, states::enabled, states::sensitive, states::focusable}) {
                QVERIFY(field->hasState(state));
            }
            QVERIFY(field->setText(numbers[i]));
            QCOMPARE(field->text(), numbers[i]);
        }
        QVERIFY(waitFor([&] { return program.savedArea() == frame; }, patience));

        QVERIFY(program.pressButton(QStringLiteral("Start sharing")));
        QVERIFY(program.showsArea(area));
        QVERIFY(program.becomesUsable(QStringLiteral("Stop sharing, Minimize, Close")));
        QVERIFY(program.pressButton(QStringLiteral("Stop sharing")));
        QVERIFY(program.waitForNoOutput());
        QVERIFY(program.becomesUsable(idle));
    }

    void screenReader_hearsAndAnswersAnAlert()
    {
        ReadProgram program({QStringLiteral("--area=0,0,0x100"), QStringLiteral("--share")});
        const auto alert = program.await(roles::alert, QStringLiteral("Screen Capture"));
        QVERIFY(alert);
        QVERIFY(alert->description().contains(QStringLiteral("The area is empty.")));
        QVERIFY(alert->find(roles::label, alert->description()));
        const auto button = alert->find(roles::pushButton, QStringLiteral("OK"));
        QVERIFY(button && button->press());
        QVERIFY(
            waitFor([&] { return !program.find(roles::alert, QStringLiteral("Screen Capture")); },
                    patience));
        QVERIFY(program.pressButton(QStringLiteral("Close")));
        QCOMPARE(program.waitForExit(), 0);
    }
};

QTEST_GUILESS_MAIN(AccessibilityTest)
#include "AccessibilityTest.moc"
