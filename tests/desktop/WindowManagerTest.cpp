// SPDX-License-Identifier: MIT
#include "tests/desktop/SelectorFixture.h"
#include "tests/support/ColorWindow.h"

#include <QTest>

#include <csignal>

using namespace glimmerpane;
using namespace glimmerpane::testing;

Q_DECLARE_METATYPE(WindowManager)

namespace
{

// ICCCM 4.1.4
constexpr std::uint32_t normalState = 1;
constexpr std::uint32_t iconicState = 3;
constexpr std::uint32_t alt = 0xffe9; // the keysym Alt_L

bool isListed(const XClient &client, xcb_window_t window, const char *list)
{
    const auto property = propertyOf(client, client.root(), list);
    return property && std::ranges::count(property->items32(), window) > 0;
}

std::uint32_t stateOf(const XClient &client, xcb_window_t window)
{
    return numberOf(client, window, "WM_STATE");
}

xcb_window_t focusedWindow(const XClient &client)
{
    const auto focus = ask<xcb_get_input_focus, xcb_get_input_focus_reply>(client);
    return focus ? focus->focus : xcb_window_t(XCB_WINDOW_NONE);
}

/** Unseen, unlisted and without the keyboard: nothing that a person could stumble over. */
void checkOutput(const SelectorFixture &fixture, xcb_window_t output)
{
    const XClient &client = fixture.client;
    QCOMPARE(geometryOf(client, output), QRect(QPoint(-10000, -10000), area.size()));
    const auto tree = ask<xcb_query_tree, xcb_query_tree_reply>(client, output);
    QCOMPARE(tree ? tree->parent : xcb_window_t(XCB_WINDOW_NONE), client.root());
    for (const char *list :
         {"_NET_CLIENT_LIST", "_NET_CLIENT_LIST_STACKING", "_NET_ACTIVE_WINDOW"}) {
        QVERIFY2(!isListed(client, output, list), list);
    }
    QVERIFY(focusedWindow(client) != output);
}

} // namespace

/** The same session under each window manager; its rows are run one at a time. */
class WindowManagerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void session_works_data()
    {
        QTest::addColumn<WindowManager>("manager");
        for (const ManagerProgram &program : managerPrograms) {
            QTest::newRow(program.name) << program.manager;
        }
    }
    void session_works()
    {
        QFETCH(WindowManager, manager);
        SelectorFixture fixture(manager);
        const XClient &client = fixture.client;
        // i3 has no such state, and gnome-shell lets only a person bring a window back from it.
        const bool canMinimise
            = manager != WindowManager::I3 && manager != WindowManager::GnomeShell;
        fixture.start({areaOption, QStringLiteral("--share")});
        QVERIFY(fixture.waitForMainWindow());
        QVERIFY(fixture.showsArea(area));
        const auto output = fixture.outputWindow();
        const auto main = fixture.mainWindow();
        QVERIFY(output && main);
        checkOutput(fixture, *output);

        // Who switches windows does not meet it; what comes and goes is followed.
        QVERIFY(fixture.input.pressKey(alt) && fixture.input.typeKey(keys::tab)
                && fixture.input.releaseKey(alt));
        {
            const auto other = ColorWindow::show(
                client,
                {.rectangle = area, .color = 0xff00a000, .kind = ColorWindow::Kind::Managed});
            QVERIFY(waitFor([&] { return isViewable(client, other->id()); }, patience));
            QVERIFY(fixture.showsArea(area));
            if (canMinimise) {
                sendMessage(client, *main, "WM_CHANGE_STATE", iconicState, client.root());
                QVERIFY(waitFor([&] { return stateOf(client, *main) == iconicState; }, patience));
            }
            other->setColor(0xffa000a0);
            QVERIFY(fixture.showsArea(area));
            checkOutput(fixture, *output);
        }
        // Back from iconic: by mapping it (ICCCM 4.1.4), or where it stays mapped, as a pager
        // would.
        constexpr std::uint32_t pager = 2;
        xcb_map_window(client.connection(), *main);
        sendMessage(client, *main, "_NET_ACTIVE_WINDOW", pager, client.root());
        QVERIFY(waitFor([&] { return stateOf(client, *main) == normalState; }, patience));
        QVERIFY(fixture.showsArea(area));

        QVERIFY(fixture.stopSharing());
        QVERIFY(fixture.open());
        QVERIFY(fixture.becomes(area));
        const QPoint way(-90, 40);
        const QPoint start = area.topLeft() + QPoint(100, 100);
        fixture.input.drag(start, start + way);
        QVERIFY(fixture.becomes(area.translated(way)));
        fixture.confirm();
        QVERIFY(fixture.becomes(std::nullopt));
        QCOMPARE(fixture.savedArea(), (CaptureFrame{310, 260, 600, 400}));
        QVERIFY(fixture.startAgain());
        QVERIFY(fixture.showsArea(area.translated(way)));

        fixture.program.sendSignal(SIGTERM);
        QCOMPARE(fixture.waitForExit(), 0);
    }
};

QTEST_GUILESS_MAIN(WindowManagerTest)
#include "WindowManagerTest.moc"
