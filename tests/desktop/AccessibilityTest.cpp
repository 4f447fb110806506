// SPDX-License-Identifier: MIT
#include "rig/ProgramFixture.h"
#include "rig/WaitFor.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QTest>

#include <atspi/atspi.h>

using namespace glimmerpane;
using namespace glimmerpane::testing;

namespace
{

const QStringList fields{QStringLiteral("Position X"), QStringLiteral("Position Y"),
                         QStringLiteral("Width"), QStringLiteral("Height")};

// The display is 1280 x 1024 pixels, so this is its rectangle (40, 604) to (360, 844).
constexpr QRect area(40, 604, 320, 240);
constexpr CaptureFrame frame{.x = 40, .y = 180, .width = 320, .height = 240};
const QStringList numbers{QStringLiteral("40"), QStringLiteral("180"), QStringLiteral("320"),
                          QStringLiteral("240")};

/** A GObject of the library for screen readers; null where a call failed. */
struct Unref {
    void operator()(void *object) const { g_object_unref(object); }
};
template<typename T>
using Owned = std::unique_ptr<T, Unref>;
using Accessible = Owned<AtspiAccessible>;

QString owned(gchar *text)
{
    const std::unique_ptr<gchar, decltype(&g_free)> owner(text, &g_free);
    return QString::fromUtf8(text);
}

QString nameOf(AtspiAccessible *object)
{
    return owned(atspi_accessible_get_name(object, nullptr));
}

/** The first one below this one with the role and the name. */
Accessible find(AtspiAccessible *parent, AtspiRole role, const QString &name)
{
    for (int i = 0; i < atspi_accessible_get_child_count(parent, nullptr); ++i) {
        Accessible child(atspi_accessible_get_child_at_index(parent, i, nullptr));
        if (child && atspi_accessible_get_role(child.get(), nullptr) == role
            && nameOf(child.get()) == name) {
            return child;
        }
        if (Accessible found = child ? find(child.get(), role, name) : nullptr) {
            return found;
        }
    }
    return nullptr;
}

bool hasStates(AtspiAccessible *object, const std::vector<AtspiStateType> &states)
{
    const Owned<AtspiStateSet> all(atspi_accessible_get_state_set(object));
    return std::ranges::all_of(states, [&](AtspiStateType state) {
        return atspi_state_set_contains(all.get(), state) != 0;
    });
}

/** The name of what labels it. */
QString labelOf(AtspiAccessible *object)
{
    const std::unique_ptr<GArray, decltype(&g_array_unref)> relations(
        atspi_accessible_get_relation_set(object, nullptr), &g_array_unref);
    for (guint i = 0; relations && i < relations->len; ++i) {
        const Owned<AtspiRelation> relation(g_array_index(relations.get(), AtspiRelation *, i));
        if (atspi_relation_get_relation_type(relation.get()) == ATSPI_RELATION_LABELLED_BY) {
            const Accessible target(atspi_relation_get_target(relation.get(), 0));
            return nameOf(target.get());
        }
    }
    return {};
}

/** Does what it offers first, which is to be pressed for a button. */
bool press(AtspiAccessible *object)
{
    const Owned<AtspiAction> action(atspi_accessible_get_action_iface(object));
    return action
        && owned(atspi_action_get_action_name(action.get(), 0, nullptr)) == QStringLiteral("Press")
        && atspi_action_do_action(action.get(), 0, nullptr) != 0;
}

bool setText(AtspiAccessible *object, const QString &text)
{
    const Owned<AtspiEditableText> editable(atspi_accessible_get_editable_text_iface(object));
    return editable
        && atspi_editable_text_set_text_contents(editable.get(), text.toUtf8(), nullptr) != 0;
}

QString textOf(AtspiAccessible *object)
{
    const Owned<AtspiText> text(atspi_accessible_get_text_iface(object));
    return text ? owned(atspi_text_get_text(text.get(), 0, -1, nullptr)) : QString();
}

/** The program as a screen reader has it, which is this process: it knows one bus only. */
struct ReadProgram : ProgramFixture {
    ReadProgram()
        : ProgramFixture(WindowManager::Openbox)
    {
        startBus();
        qputenv("DBUS_SESSION_BUS_ADDRESS", bus->address().toLatin1());
        qputenv("DISPLAY", server.displayName().toLatin1());
        // Screen readers do this, so that programs expose their interface.
        const QString name = QStringLiteral("reader");
        auto enable = QDBusMessage::createMethodCall(
            QStringLiteral("org.a11y.Bus"), QStringLiteral("/org/a11y/bus"),
            QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Set"));
        enable << QStringLiteral("org.a11y.Status") << QStringLiteral("IsEnabled")
               << QVariant::fromValue(QDBusVariant(true));
        QDBusConnection::connectToBus(bus->address(), name).call(enable);
        QDBusConnection::disconnectFromBus(name);
        atspi_init();
        desktop.reset(atspi_get_desktop(0));
        atspi_accessible_set_cache_mask(desktop.get(), ATSPI_CACHE_NONE);
    }

    /** Waits for it; null where it does not come. */
    Accessible await(AtspiRole role, const QString &name) const
    {
        Accessible found;
        waitFor([&] { return (found = find(desktop.get(), role, name)) != nullptr; }, patience);
        return found;
    }

    bool becomesUsable(const QString &buttons) const
    {
        const auto usable = [&] {
            QStringList names;
            for (const char *name :
                 {"Start sharing", "Set area", "Reset area", "Stop sharing", "Minimize", "Close"}) {
                const auto button
                    = find(desktop.get(), ATSPI_ROLE_PUSH_BUTTON, QLatin1String(name));
                if (button
                    && hasStates(button.get(), {ATSPI_STATE_ENABLED, ATSPI_STATE_SENSITIVE})) {
                    names.append(QLatin1String(name));
                }
            }
            return names.join(QStringLiteral(", "));
        };
        return waitFor([&] { return usable() == buttons; }, patience);
    }

    bool pressButton(const QString &name) const
    {
        const auto button = find(desktop.get(), ATSPI_ROLE_PUSH_BUTTON, name);
        return button && press(button.get());
    }

    Accessible desktop;
};

} // namespace

class AccessibilityTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void screenReader_findsAndUsesEverything()
    {
        ReadProgram program;
        program.start();
        const QString idle = QStringLiteral("Start sharing, Set area, Reset area, Minimize, Close");
        QVERIFY(program.await(ATSPI_ROLE_FRAME, QStringLiteral("Glimmerpane")));
        QVERIFY(program.becomesUsable(idle));
        for (const char *line : {"Glimmerpane share", "https://glimmerpane.example"}) {
            QVERIFY2(program.await(ATSPI_ROLE_LABEL, QLatin1String(line)), line);
        }
        for (int i = 0; i < fields.size(); ++i) {
            const auto field = program.await(ATSPI_ROLE_TEXT, fields[i]);
            QVERIFY2(field, qPrintable(fields[i]));
            QCOMPARE(labelOf(field.get()), fields[i]);
            QVERIFY(hasStates(field.get(),
                              {ATSPI_STATE_EDITABLE, ATSPI_STATE_ENABLED, ATSPI_STATE_SENSITIVE,
                               ATSPI_STATE_FOCUSABLE}));
            QVERIFY(setText(field.get(), numbers[i]));
            QCOMPARE(textOf(field.get()), numbers[i]);
        }
        QVERIFY(waitFor([&] { return program.savedArea() == frame; }, patience));

        QVERIFY(program.pressButton(QStringLiteral("Start sharing")));
        QVERIFY(program.showsArea(area));
        QVERIFY(program.becomesUsable(QStringLiteral("Stop sharing, Minimize, Close")));
        QVERIFY(program.pressButton(QStringLiteral("Stop sharing")));
        QVERIFY(program.waitForNoOutput());
        QVERIFY(program.becomesUsable(idle));

        program.start({QStringLiteral("--area=0,0,0x100"), QStringLiteral("--share")});
        const QString title = QStringLiteral("Screen Capture");
        const auto alert = program.await(ATSPI_ROLE_ALERT, title);
        QVERIFY(alert);
        const QString text = owned(atspi_accessible_get_description(alert.get(), nullptr));
        QVERIFY(text.contains(QStringLiteral("The area is empty.")));
        QVERIFY(find(alert.get(), ATSPI_ROLE_LABEL, text));
        QVERIFY(program.pressButton(QStringLiteral("OK")));
        const auto hasGone = [&] { return !find(program.desktop.get(), ATSPI_ROLE_ALERT, title); };
        QVERIFY(waitFor(hasGone, patience));
        QVERIFY(program.pressButton(QStringLiteral("Close")));
        QCOMPARE(program.waitForExit(), 0);
    }
};

QTEST_GUILESS_MAIN(AccessibilityTest)
#include "AccessibilityTest.moc"
