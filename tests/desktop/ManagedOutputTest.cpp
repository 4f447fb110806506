// SPDX-License-Identifier: MIT
#include "tests/desktop/SelectorFixture.h"
#include "tests/support/ColorWindow.h"
#include "tests/support/WindowManager.h"

#include <QTest>

#include <csignal>
#include <utility>

using namespace glimmerpane;
using namespace glimmerpane::testing;

Q_DECLARE_METATYPE(WindowManager)

namespace
{

const QStringList arguments{areaOption, QStringLiteral("--output-window=managed")};
constexpr QRect screen({}, screenSize);
constexpr QRect corner(0, 0, 650, 450); ///< into which managers pull the output back
constexpr QRect visibleCorner(0, 0, 650, 250); ///< above the main window and its shadow

/** Some compositors dither what lies behind. */
bool isAlike(const QImage &a, const QImage &b)
{
    constexpr int levels = 8;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb one = a.pixel(x, y);
            const QRgb other = b.pixel(x, y);
            if (std::abs(qRed(one) - qRed(other)) > levels
                || std::abs(qGreen(one) - qGreen(other)) > levels
                || std::abs(qBlue(one) - qBlue(other)) > levels) {
                return false;
            }
        }
    }
    return a.size() == b.size();
}

struct ManagedOutputFixture : SelectorFixture {
    using SelectorFixture::SelectorFixture;

    QImage cornerPicture() const { return required(client.screenshot(visibleCorner)); }

    /** What nobody else draws, the server draws again. */
    void paintRoot(std::uint32_t color) const
    {
        xcb_change_window_attributes(client.connection(), client.root(), XCB_CW_BACK_PIXEL, &color);
        xcb_clear_area(client.connection(), 1, client.root(), 0, 0, 0, 0);
        client.sync();
    }

    /** The corner over a new root, without the output. */
    QImage pictureWithout() const
    {
        paintRoot(0xff208040);
        // A compositor follows when it likes; it has done so once nothing changes any more.
        QImage picture;
        waitFor([&] { return cornerPicture() == std::exchange(picture, cornerPicture()); },
                patience);
        paintRoot(0xff336699);
        return picture;
    }

    bool isListed() const
    {
        const auto list = propertyOf(client, client.root(), "_NET_CLIENT_LIST");
        const auto output = outputWindow();
        return list && output && std::ranges::count(list->items32(), *output) > 0;
    }
    bool becomesListed() const
    {
        return waitFor([this] { return isListed(); }, patience);
    }

    bool looksLike(const QImage &expected) const
    {
        const bool does = waitFor([&] { return isAlike(cornerPicture(), expected); }, patience);
        if (!does) {
            cornerPicture().save(QStringLiteral("managed-output-seen.png"));
            expected.save(QStringLiteral("managed-output-expected.png"));
        }
        return does;
    }

    /** Whether it is out of the way while it shows a window, its place looking as without it. */
    bool isUnseen(const QImage &without)
    {
        const auto window
            = required(ColorWindow::show(client, {.rectangle = area, .color = 0xffa000a0}));
        if (!showsArea(area)) {
            return false;
        }
        paintRoot(0xff208040);
        const auto output = outputWindow();
        const auto place = output ? geometryOf(client, *output) : std::nullopt;
        const auto focus = ask<xcb_get_input_focus, xcb_get_input_focus_reply>(client);
        return place && (corner | (*place & screen)) == corner && focus && focus->focus != *output
            && numberOf(client, client.root(), "_NET_ACTIVE_WINDOW") != *output
            && looksLike(without);
    }
};

} // namespace

/** The output window that the window manager manages; its rows are run one at a time. */
class ManagedOutputTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void output_isListedAndUnseen_data()
    {
        QTest::addColumn<WindowManager>("manager");
        for (const ManagerProgram &program : managerPrograms) {
            QTest::newRow(program.name) << program.manager;
        }
    }
    void output_isListedAndUnseen()
    {
        QFETCH(WindowManager, manager);
        ManagedOutputFixture fixture(manager);
        QVERIFY(fixture.launch(arguments));
        fixture.input.moveTo(besidesEverything);
        QImage without;
        for (int session = 0; session < 2; ++session) {
            QVERIFY(fixture.startAgain());
            fixture.input.moveTo(besidesEverything);
            QVERIFY(fixture.showsArea(area));
            // i3 would tile it, so there it stays out of the list and says so.
            QVERIFY(waitFor([&] { return fixture.isListed() == (manager != WindowManager::I3); },
                            patience));
            QCOMPARE(fixture.program.output().contains("unlisted window: i3"),
                     manager == WindowManager::I3);
            // The managers that draw a desktop have done so after the first session.
            QVERIFY(session == 0 || fixture.isUnseen(without));
            QVERIFY(fixture.stopSharing());
            fixture.input.moveTo(besidesEverything);
            without = fixture.pictureWithout();
        }
        fixture.program.sendSignal(SIGTERM);
        QCOMPARE(fixture.waitForExit(), 0);
    }

    void output_staysUnseen_whenManagersComeAndGo()
    {
        ManagedOutputFixture fixture;
        const auto startManager = [&](const char *name, auto *start) {
            return required(start(fixture.client,
                                  {.program = QString::fromLatin1(name),
                                   .environment = fixture.server.environment()}));
        };
        auto manager = startManager("openbox", startWindowManager);
        QVERIFY(fixture.launch(arguments));
        fixture.input.moveTo(besidesEverything);
        const QImage before = fixture.pictureWithout();
        QVERIFY(fixture.startAgain());
        fixture.input.moveTo(besidesEverything);
        QVERIFY(fixture.isUnseen(before));
        const auto output = fixture.outputWindow();
        for (int i = 0; i < 2; ++i) {
            manager.kill();
            QVERIFY(fixture.isUnseen(before));
            manager = startManager("openbox", startWindowManager);
            QVERIFY(fixture.isUnseen(before));
            QVERIFY(fixture.becomesListed());
        }
        {
            const auto compositor = startManager("picom", startCompositor);
            QImage grey(visibleCorner.size(), QImage::Format_RGB32); // picom's own root
            grey.fill(0xff808080);
            QVERIFY(fixture.isUnseen(grey));
        }
        QVERIFY(fixture.isUnseen(before));
        QCOMPARE(fixture.outputWindow(), output);
    }

    void output_isAnOrdinaryWindow_whereItCannotBeHidden()
    {
        ManagedOutputFixture fixture;
        const auto manager
            = required(startWindowManager(fixture.client,
                                          {.program = QStringLiteral("metacity"),
                                           .arguments = {QStringLiteral("--compositor=none")},
                                           .environment = fixture.server.environment()}));
        QVERIFY(fixture.launch(arguments));
        QVERIFY(fixture.startAgain());
        fixture.input.moveTo(besidesEverything);
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

QTEST_GUILESS_MAIN(ManagedOutputTest)
#include "ManagedOutputTest.moc"
