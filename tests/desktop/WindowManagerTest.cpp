// SPDX-License-Identifier: MIT
#include "rig/WindowManager.h"
#include "rig/ColorWindow.h"
#include "tests/desktop/SelectorFixture.h"

#include <QTest>

#include <csignal>
#include <utility>

using namespace glimmerpane;
using namespace glimmerpane::testing;

Q_DECLARE_METATYPE(WindowManager)

namespace
{

// ICCCM 4.1.4
constexpr std::uint32_t normalState = 1;
constexpr std::uint32_t iconicState = 3;
constexpr std::uint32_t alt = 0xffe9; // the keysym Alt_L
const QStringList managedOutput{areaOption, QStringLiteral("--output-window=managed")};
constexpr QRect screen({}, screenSize);
constexpr QRect corner(0, 0, 650, 450); ///< into which managers pull a managed output back
constexpr QRect visibleCorner(0, 0, 650, 250); ///< above the main window and its shadow

/** Some compositors dither what lies behind. */
bool isAlike(const QImage &one, const QImage &other)
{
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            if (!isNear(one.pixelColor(x, y), other.pixelColor(x, y))) {
                return false;
            }
        }
    }
    return one.size() == other.size();
}

struct ManagerFixture : SelectorFixture {
    using SelectorFixture::becomes;
    using SelectorFixture::SelectorFixture;

    bool isIn(const char *list, std::optional<xcb_window_t> window) const
    {
        const auto property = propertyOf(client, client.root(), list);
        return property && window && std::ranges::count(property->items32(), *window) > 0;
    }
    bool isIn(const char *list) const { return isIn(list, outputWindow()); }
    bool isActive(xcb_window_t window) const { return isIn("_NET_ACTIVE_WINDOW", window); }
    bool becomesListed() const
    {
        return waitFor([this] { return isIn("_NET_CLIENT_LIST"); }, patience);
    }
    bool hasOutputTheKeyboard() const
    {
        const auto focus = ask<xcb_get_input_focus, xcb_get_input_focus_reply>(client);
        return isIn("_NET_ACTIVE_WINDOW") || !focus || focus->focus == outputWindow();
    }
    /** A minimised window is looked for in vain, so the caller names it. */
    bool becomes(xcb_window_t window, std::uint32_t state) const
    {
        return waitFor([&] { return numberOf(client, window, "WM_STATE") == state; }, patience);
    }

    /** Invisible, unlisted and without the keyboard: nothing that gets in the user's way. */
    void checkUnlistedOutput() const
    {
        const xcb_window_t output = *outputWindow();
        QCOMPARE(geometryOf(client, output), QRect(QPoint(-10000, -10000), area.size()));
        const auto tree = ask<xcb_query_tree, xcb_query_tree_reply>(client, output);
        QCOMPARE(tree ? tree->parent : xcb_window_t(XCB_WINDOW_NONE), client.root());
        QCOMPARE(numberOf(client, output, "_NET_WM_WINDOW_TYPE"),
                 client.atom("_NET_WM_WINDOW_TYPE_NORMAL"));
        QVERIFY(!isIn("_NET_CLIENT_LIST") && !isIn("_NET_CLIENT_LIST_STACKING"));
        QVERIFY(!hasOutputTheKeyboard());
    }

    QImage cornerPicture() const { return required(client.screenshot(visibleCorner)); }

    /** What no compositor draws, the server draws again. */
    void paintRoot(std::uint32_t color) const
    {
        xcb_change_window_attributes(client.connection(), client.root(), XCB_CW_BACK_PIXEL, &color);
        xcb_clear_area(client.connection(), 1, client.root(), 0, 0, 0, 0);
        client.sync();
    }

    /** The corner over a new root, without the output. */
    QImage pictureWithout() const
    {
        input.moveTo(besidesEverything);
        paintRoot(0xff208040);
        // A compositor follows when it likes; it has done so once nothing changes any more.
        QImage picture;
        waitFor([&] { return cornerPicture() == std::exchange(picture, cornerPicture()); },
                patience);
        paintRoot(0xff336699);
        return picture;
    }

    /** Whether it is out of the way while it shows a window, its place looking as without it. */
    bool isUnseen(const QImage &without)
    {
        input.moveTo(besidesEverything);
        paintRoot(0xff208040);
        // With the second colour a compositor has painted what the output showed of the first.
        const auto window = required(ColorWindow::show(client, {.rectangle = area}));
        for (const QRgb color : {0xffa000a0, 0xffa0a000}) {
            window.setColor(color);
            const auto isPainted
                = [&] { return required(client.screenshot(area)).pixel(9, 9) == color; };
            if (!waitFor(isPainted, patience) || !showsArea(area)) {
                return false;
            }
        }
        const auto place = geometryOf(client, *outputWindow());
        return place && (corner | (*place & screen)) == corner && !hasOutputTheKeyboard()
            && waitFor([&] { return isAlike(cornerPicture(), without); }, patience);
    }
};

} // namespace

/** The same sessions under each window manager; rows are run one at a time. */
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
        ManagerFixture fixture(manager);
        const XClient &client = fixture.client;
        fixture.startBus();
        // i3 has no such state, and in gnome-shell only the user can restore a window from it.
        const bool canMinimise
            = manager != WindowManager::I3 && manager != WindowManager::GnomeShell;
        fixture.start({areaOption, QStringLiteral("--share")});
        QVERIFY(fixture.waitForMainWindow());
        QVERIFY(fixture.showsArea(area));
        const auto main = *fixture.mainWindow();
        fixture.checkUnlistedOutput();

        // Window switchers skip it, and it follows windows that open and close.
        QVERIFY(fixture.input.pressKey(alt) && fixture.input.typeKey(keys::tab)
                && fixture.input.releaseKey(alt));
        {
            const auto other = ColorWindow::show(
                client,
                {.rectangle = area, .color = 0xff00a000, .kind = ColorWindow::Kind::Managed});
            QVERIFY(waitFor([&] { return isViewable(client, other->id()); }, patience));
            QVERIFY(fixture.showsArea(area));
            if (canMinimise) {
                sendMessage(client, main, "WM_CHANGE_STATE", iconicState, client.root());
                QVERIFY(fixture.becomes(main, iconicState));
            }
            other->setColor(0xffa000a0);
            QVERIFY(fixture.showsArea(area));
            fixture.checkUnlistedOutput();
        }
        // Starting the program again raises it.
        const auto wall
            = ColorWindow::show(client, {.rectangle = screen, .kind = ColorWindow::Kind::Managed});
        QVERIFY(waitFor([&] { return fixture.isActive(wall->id()); }, patience));
        QCOMPARE(fixture.launchAgain(), 0);
        QVERIFY(fixture.becomes(main, normalState));
        QVERIFY(waitFor([&] { return fixture.isActive(main); }, patience));
        QVERIFY(fixture.showsArea(area));

        QVERIFY(fixture.stopSharing());
        const QRect after = area.translated(-90, 40);
        QVERIFY(fixture.opensAndMoves(area, after));
        fixture.confirm();
        QVERIFY(fixture.becomes(std::nullopt));
        QCOMPARE(fixture.savedArea(), (CaptureFrame{310, 260, 600, 400}));
        QVERIFY(fixture.startAgain());
        QVERIFY(fixture.showsArea(after));

        fixture.program.sendSignal(SIGTERM);
        QCOMPARE(fixture.waitForExit(), 0);
    }

    void managedOutput_isListedAndUnseen_data() { session_works_data(); }
    void managedOutput_isListedAndUnseen()
    {
        QFETCH(WindowManager, manager);
        ManagerFixture fixture(manager);
        QVERIFY(fixture.launch(managedOutput));
        QImage without;
        for (int session = 0; session < 2; ++session) {
            QVERIFY(fixture.startAgain());
            QVERIFY(fixture.showsArea(area));
            // i3 would tile it, so there it stays out of the list and says so.
            if (manager == WindowManager::I3) {
                fixture.checkUnlistedOutput();
                QVERIFY(fixture.program.output().contains("will not be listed: i3"));
            } else {
                QVERIFY(fixture.becomesListed());
            }
            // The managers that draw a desktop have done so after the first session.
            QVERIFY(session == 0 || fixture.isUnseen(without));
            QVERIFY(fixture.stopSharing());
            without = fixture.pictureWithout();
        }
        fixture.program.sendSignal(SIGTERM);
        QCOMPARE(fixture.waitForExit(), 0);
    }

    void managedOutput_staysUnseen_whenManagersComeAndGo()
    {
        ManagerFixture fixture;
        const auto startManager = [&](const char *name, auto *start) {
            return required(start(fixture.client,
                                  {.program = QString::fromLatin1(name),
                                   .environment = fixture.server.environment()}));
        };
        auto manager = startManager("openbox", startWindowManager);
        QVERIFY(fixture.launch(managedOutput));
        const QImage without = fixture.pictureWithout();
        QVERIFY(fixture.startAgain());
        const auto output = fixture.outputWindow();
        for (int i = 0; i < 2; ++i) {
            QVERIFY(fixture.becomesListed() && fixture.isUnseen(without));
            manager.kill();
            QVERIFY(fixture.isUnseen(without));
            manager = startManager("openbox", startWindowManager);
        }
        {
            const auto compositor = startManager("picom", startCompositor);
            // It paints a root of its own, which is grey in picom 9 and black in picom 12.
            const QRect farCorner(screen.topRight(), QSize(1, 1));
            QRgb root = 0;
            const auto paintsRoot = [&] {
                root = required(fixture.client.screenshot(farCorner)).pixel(0, 0);
                return root != without.pixel(0, 0);
            };
            QVERIFY(waitFor(paintsRoot, patience));
            QImage onlyRoot(visibleCorner.size(), QImage::Format_RGB32);
            onlyRoot.fill(root);
            QVERIFY(fixture.becomesListed() && fixture.isUnseen(onlyRoot));
        }
        QVERIFY(fixture.isUnseen(without));
        QCOMPARE(fixture.outputWindow(), output);
    }

    void managedOutput_isAnOrdinaryWindow_whereItCannotBeHidden()
    {
        ManagerFixture fixture;
        const auto manager
            = required(startWindowManager(fixture.client,
                                          {.program = QStringLiteral("metacity"),
                                           .arguments = {QStringLiteral("--compositor=none")},
                                           .environment = fixture.server.environment()}));
        QVERIFY(fixture.launch(managedOutput));
        QVERIFY(fixture.startAgain());
        QVERIFY(waitFor([&] { return fixture.program.output().contains("cannot be hidden"); },
                        patience));
        QCOMPARE(fixture.program.output().count("Glimmerpane - Output"), 1);
        const auto isOnScreen = [&] {
            const auto place = geometryOf(fixture.client, *fixture.outputWindow());
            return place && screen.contains(*place);
        };
        QVERIFY(waitFor(isOnScreen, patience));
        QVERIFY(fixture.becomesListed());
    }
};

QTEST_GUILESS_MAIN(WindowManagerTest)
#include "WindowManagerTest.moc"
