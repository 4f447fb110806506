// SPDX-License-Identifier: MIT
#include "rig/CapturedWindow.h"
#include "rig/ColorWindow.h"
#include "rig/GnomeSession.h"
#include "rig/PictureComparison.h"

#include <QTest>

#include <optional>

using namespace glimmerpane;
using namespace glimmerpane::testing;

namespace
{

constexpr std::chrono::seconds patience{15};
constexpr QRect area(920, 300, 340, 380); ///< desktop pixels
const QString outputTitle = QStringLiteral("Glimmerpane - Output");

/** The program in a GNOME session, and what a viewer of its output window sees. */
struct GnomeFixture {
    explicit GnomeFixture(const QString &backend, const GnomeSession::Options &options = {})
        : session(options)
        , backend_(backend)
    {
    }

    GnomeSession session;
    const XClient client = required(XClient::connect(session.displayName()));
    const ColorWindow red = required(
        ColorWindow::show(client, {.rectangle = {910, 280, 300, 200}, .color = 0xffff0000}));
    const ColorWindow changing = required(
        ColorWindow::show(client, {.rectangle = {1000, 350, 111, 97}, .color = 0xff00ff00}));
    const GnomeInput input = session.input();
    const GnomeStream monitor = session.recordMonitor();
    ChildProcess program;

    void start(const QStringList &arguments)
    {
        auto environment = session.environment();
        environment.insert(QStringLiteral("QT_LOGGING_RULES"),
                           QStringLiteral("glimmerpane.*.info=true"));
        program = required(ChildProcess::start(
            {.program = QStringLiteral(GLIMMERPANE_PROGRAM),
             .arguments = QStringList{QStringLiteral("--backend=") + backend_} + arguments,
             .environment = environment}));
    }
    void share(const QRect &rectangle = area)
    {
        start({QStringLiteral("--area=%1,%2,%3x%4")
                   .arg(rectangle.x())
                   .arg(720 - rectangle.y() - rectangle.height())
                   .arg(rectangle.width())
                   .arg(rectangle.height()),
               QStringLiteral("--share")});
    }
    QByteArray command(const char *option) const
    {
        auto other = required(ChildProcess::start({.program = QStringLiteral(GLIMMERPANE_PROGRAM),
                                                   .arguments = {QString::fromLatin1(option)},
                                                   .environment = session.environment()}));
        return other.waitForEnd(patience) ? other.output() : "it does not end";
    }

    QImage output() const
    {
        const auto window = findWindow(client, outputTitle, Listing::All);
        const auto picture = window ? windowPicture(client, *window) : failure({});
        return picture.value_or(QImage());
    }
    bool isOutputThere() const { return findWindow(client, outputTitle, Listing::All).has_value(); }
    QImage seen(const QRect &rectangle) const { return monitor->picture().copy(rectangle); }
    bool showsArea(const QRect &rectangle = area) const
    {
        return becomeEqual([&] { return output(); }, [&] { return seen(rectangle); }, patience);
    }

private:
    const QString backend_;
};

} // namespace

/** The program in a GNOME session on Wayland. */
class GnomeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void session_works()
    {
        GnomeFixture fixture(QStringLiteral("gnome"));
        fixture.share();
        if (!fixture.showsArea()) {
            fixture.monitor->picture().save(QStringLiteral("monitor.png"));
            QFAIL(fixture.program.output());
        }
        fixture.changing.setColor(0xff0000ff);
        QVERIFY(fixture.showsArea());
        qInfo() << fixture.command("--status");
    }
    void portal_works()
    {
        GnomeFixture fixture(QStringLiteral("portal"));
        fixture.share();
        waitFor([] { return false; }, std::chrono::seconds(4));
        fixture.monitor->picture().save(QStringLiteral("dialog.png"));
        fixture.input.click({600, 402});
        waitFor([] { return false; }, std::chrono::seconds(1));
        fixture.monitor->picture().save(QStringLiteral("dialog2.png"));
        fixture.input.click({851, 249});
        waitFor([] { return false; }, std::chrono::seconds(3));
        fixture.monitor->picture().save(QStringLiteral("dialog3.png"));
        qInfo() << fixture.program.output();
        QVERIFY(fixture.showsArea());
    }
};

QTEST_GUILESS_MAIN(GnomeTest)
#include "GnomeTest.moc"
