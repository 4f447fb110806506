// SPDX-License-Identifier: MIT
#include "demo/Backdrop.h"
#include "rig/Browser.h"
#include "rig/CursorPicture.h"
#include "rig/GnomeSession.h"
#include "rig/ProgramFixture.h"
#include "rig/SettingsPortal.h"
#include "rig/WaitFor.h"
#include "rig/XWindows.h"

#include <QDir>
#include <QGuiApplication>

#include <array>
#include <cmath>

using namespace glimmerpane;
using namespace glimmerpane::demo;
using namespace glimmerpane::testing;
using namespace std::chrono_literals;

namespace
{

constexpr QSize filmed(1280, 720);
constexpr QSize screen(1280, 800); ///< the browser's notice of what is shared lies below the film
constexpr QPoint mainWindowPlace(24, 60);
constexpr QRect documentPlace(360, 60, 440, 632);
constexpr QRect callPlace(816, 60, 440, 632);
constexpr QRect firstArea(420, 380, 300, 240);
constexpr QRect sharedArea(364, 96, 432, 404); ///< all of the document but its last part
constexpr QPoint firstBar(621, 300);
constexpr QPoint lastBar(762, 260);
constexpr QPoint emptyStep(640, 467);
constexpr QPoint callButton(1078, 658);
constexpr QPoint chooserSteps[] = {{1039, 153}, {947, 253}, {1190, 554}}; ///< "Window", it, "Share"
constexpr QPoint inSelector(70, 60); ///< away from its edges and buttons
constexpr QPoint besideConfirm(30, -10); ///< from the selector's middle
constexpr auto tourLength = 20s;

void save(const QImage &picture, const QDir &folder, const QString &name)
{
    require(picture.save(folder.filePath(name)), "cannot write a picture");
}

QUrl page(const char *name, bool isFramed = false)
{
    auto url = QUrl::fromLocalFile(QStringLiteral(PICTURES_PAGES "/") + QString::fromLatin1(name));
    url.setFragment(isFramed ? QStringLiteral("framed") : QString());
    return url;
}

ChildProcess openDocument(const QString &home, bool isFramed,
                          const QProcessEnvironment &environment)
{
    // A second window of the browser that runs, with all that has been said to that one.
    return required(ChildProcess::start(
        {.program = QStringLiteral("chromium"),
         .arguments = {QStringLiteral("--no-sandbox"), QStringLiteral("--test-type"),
                       QStringLiteral("--user-data-dir=%1/chromium").arg(home),
                       QStringLiteral("--app=") + page("document.html", isFramed).toString()},
         .environment = environment}));
}

/** A person's pointer and keyboard. */
class Hand
{
public:
    explicit Hand(const InputInjector &input)
        : input_(input)
    {
        input_.moveTo(place_);
    }

    void glide(QPoint to, std::chrono::milliseconds time = 800ms)
    {
        const QPoint from = place_;
        const auto begin = std::chrono::steady_clock::now();
        for (double part = 0; part < 1;) {
            std::this_thread::sleep_for(12ms);
            part = std::min(1.0, (std::chrono::steady_clock::now() - begin) / (time * 1.0));
            const double eased = part * part * (3 - 2 * part);
            place_ = (QPointF(from) + QPointF(to - from) * eased).toPoint();
            input_.moveTo(place_);
        }
    }
    void click(QPoint at, std::chrono::milliseconds time = 800ms)
    {
        glide(at, time);
        input_.press();
        std::this_thread::sleep_for(100ms);
        input_.release();
        std::this_thread::sleep_for(150ms);
    }
    void drag(QPoint from, QPoint to)
    {
        glide(from, 500ms);
        input_.press();
        glide(to, 900ms);
        input_.release();
    }
    void type(const QByteArray &text)
    {
        for (const char letter : text) {
            const auto keysym = static_cast<uint32_t>(letter);
            const bool isUpper = std::isupper(letter) != 0;
            require((!isUpper || input_.pressKey(keys::shift)) && input_.typeKey(keysym)
                        && (!isUpper || input_.releaseKey(keys::shift)),
                    "the keyboard lacks a letter");
            std::this_thread::sleep_for(130ms);
        }
    }

private:
    const InputInjector &input_;
    QPoint place_{330, 600};
};

/** The main window alone, light and dark, in which what its round corners leave is transparent. */
void takeMainWindow(const QDir &folder)
{
    ProgramFixture fixture(WindowManager::Openbox, 1, screen);
    fixture.startBus();
    SettingsPortal portal(fixture.bus->address());
    require(portal.isThere(), "cannot be the desktop's portal");
    constexpr QRgb key = 0xffff00ff;
    QImage background(screen, QImage::Format_RGB32);
    background.fill(key);
    required(setBackground(fixture.client, background));
    fixture.startWith(sharedArea, mainWindowPlace, true);

    for (const auto &[scheme, name] :
         {std::pair(SettingsPortal::light, QStringLiteral("main-window.png")),
          std::pair(SettingsPortal::dark, QStringLiteral("main-window-dark.png"))}) {
        portal.change(scheme);
        const bool isDark = scheme == SettingsPortal::dark;
        QImage picture;
        const auto isPainted = [&] {
            const auto place = geometryOf(fixture.client, fixture.mainWindow().value()).value();
            picture = required(fixture.client.screenshot(place));
            return (qGray(picture.pixel(picture.rect().center().x(), 8)) < 128) == isDark
                && fixture.canPress(places::stopSharing);
        };
        require(waitFor(isPainted, patience), "the main window does not change");
        picture.setAlphaChannel(picture.createMaskFromColor(key, Qt::MaskOutColor));
        save(picture, folder, name);
    }
    fixture.end();
}

/** Puts a browser's window at a place, without the window manager's frame. */
void place(const XClient &client, const QString &title, const QRect &rectangle)
{
    std::optional<xcb_window_t> window;
    require(
        waitFor([&] { return (window = findWindow(client, title)).has_value(); }, browserPatience),
        "a browser's window is missing");
    removeFrame(client, *window);
    const auto isThere = [&] {
        setGeometry(client, *window, rectangle);
        return geometryOf(client, *window) == rectangle;
    };
    require(waitFor(isThere, patience), "a browser's window does not go to its place");
}

/** The document, the call beside it and the program, whose main window is minimised. */
struct Scene : ProgramFixture {
    Scene();

    void awaitCall();
    void openMainWindow() const;
    QImage picture() const;

private:
    QTemporaryDir home_;
    std::unique_ptr<Browser> call_;
    ChildProcess document_;
    xcb_window_t mainWindow_ = XCB_WINDOW_NONE;
};

Scene::Scene()
    : ProgramFixture(WindowManager::Openbox, 1, screen)
{
    required(setBackground(client, drawWallpaper(screen)));
    auto browsers = environment;
    browsers.insert(QStringLiteral("HOME"), home_.path());
    call_ = startChromium({.environment = browsers,
                           .home = home_.path(),
                           .page = page("call.html"),
                           .place = callPlace,
                           .isBare = true});
    place(client, QStringLiteral("Weekly call"), callPlace);
    document_ = openDocument(home_.path(), false, browsers);
    place(client, QStringLiteral("Spring report"), documentPlace);
    startWith(firstArea, mainWindowPlace, false);
    constexpr uint32_t iconicState = 3; // ICCCM 4.1.4
    mainWindow_ = mainWindow().value();
    sendMessage(client, mainWindow_, "WM_CHANGE_STATE", iconicState, client.root());
    require(waitFor([&] { return !isViewable(client, mainWindow_); }, patience),
            "the main window cannot be minimised");
}

void Scene::openMainWindow() const
{
    constexpr uint32_t fromPager = 2; // as EWMH has it
    sendMessage(client, mainWindow_, "_NET_ACTIVE_WINDOW", fromPager, client.root());
    require(waitForMainWindow(), "the main window does not come back");
}

/** Returns once the others see the shared window. */
void Scene::awaitCall()
{
    const auto isLive
        = [&] { return call_->ask(QStringLiteral("shownWidth()")).toInt() == sharedArea.width(); };
    require(waitFor(isLive, patience), "the call does not show the window");
}

QImage Scene::picture() const
{
    const auto cursor = required(currentCursor(client));
    return withCursor(required(client.screenshot({QPoint(), filmed})), {}, cursor);
}

/** Films the display until the tour has its length. */
ChildProcess startFilm(const XvfbServer &server, const QString &path)
{
    auto film = required(ChildProcess::start(
        {.program = QStringLiteral("ffmpeg"),
         .arguments = QStringLiteral("-y -nostdin -f x11grab -framerate 20 -video_size %1x%2 -i %3 "
                                     "-t %4 -c:v libx264rgb -preset ultrafast -qp 0")
                          .arg(filmed.width())
                          .arg(filmed.height())
                          .arg(server.displayName())
                          .arg(tourLength.count())
                          .split(u' ')
             << path}));
    require(waitFor([&] { return film.output().contains("frame="); }, patience),
            "ffmpeg does not film");
    return film;
}

/** Someone chooses an area, shares it, works in it and stops; the others' view stands beside. */
void takeTour(const QDir &folder)
{
    Scene scene;
    Hand hand(scene.input);
    auto camera = startFilm(scene.server, folder.filePath(QStringLiteral("tour.mkv")));
    const auto begin = std::chrono::steady_clock::now();
    const auto until
        = [&](std::chrono::milliseconds time) { std::this_thread::sleep_until(begin + time); };

    until(500ms);
    scene.openMainWindow();
    const QPoint start = scene.awaitButton(places::startSharing);
    hand.click(start + places::setArea - places::startSharing, 1000ms);
    require(waitFor([&] { return scene.selector().has_value(); }, patience),
            "the selector does not come");
    const QRect moved(sharedArea.topLeft(), firstArea.size());
    hand.drag(firstArea.topLeft() + inSelector, moved.topLeft() + inSelector);
    hand.drag(moved.bottomRight(), sharedArea.bottomRight() + QPoint(1, 1));
    hand.glide(sharedArea.center() + besideConfirm, 700ms);
    save(scene.picture(), folder, QStringLiteral("selector.png"));
    hand.click(sharedArea.center() + besideConfirm, 200ms);
    hand.click(scene.awaitButton(places::startSharing), 700ms);
    scene.awaitOutputWindow();
    hand.click(callButton, 900ms);
    std::this_thread::sleep_for(200ms);
    for (const QPoint step : chooserSteps) {
        hand.click(step, 600ms);
        std::this_thread::sleep_for(150ms);
    }
    scene.awaitCall();
    hand.click(firstBar, 900ms);
    hand.click(emptyStep, 900ms);
    hand.type("Publish on Friday");
    hand.click(lastBar, 900ms);
    save(scene.picture(), folder, QStringLiteral("call.png"));
    until(17s);
    hand.click(scene.awaitButton(places::stopSharing), 800ms);
    require(std::chrono::steady_clock::now() - begin < tourLength, "too slow for the film");
    require(camera.waitForEnd(tourLength) && camera.exitCode() == 0, "ffmpeg failed");
}

/** A call in GNOME's Wayland session, whose shell places the windows from left to right. */
void takeGnome(const QDir &folder)
{
    constexpr QRect shared(752, 84, 412, 404);
    constexpr QPoint toDialog[] = {{246, 633}, {234, 194}}; // the call's button, "Window"
    constexpr QPoint inDialog[] = {{600, 512}, {851, 249}}; // the output, "Share"
    constexpr QPoint shareInBrowser(412, 574);
    constexpr QPoint hideNotice(397, 62);
    constexpr QPoint inDocument(1085, 430);
    const GnomeSession session;
    const auto input = session.input();
    auto monitor = session.recordMonitor(0, GnomeScreenCast::Pointer::Embedded);
    const auto await = [&](const QString &title) {
        require(waitFor([&] { return session.window(title).has_value(); }, browserPatience),
                "a window does not come");
        std::this_thread::sleep_for(1s); // the next one shall stand on its right
    };
    const auto pause = [](auto time) { waitFor([] { return false; }, time); };
    const auto becomesDialog = [&](bool isShown) {
        const auto isIt
            = [&] { return session.window(QStringLiteral("Screen Share")).has_value() == isShown; };
        require(waitFor(isIt, patience), "GNOME's dialog does not come or go");
        pause(1s); // it opens slowly
    };
    const auto click = [&](const auto &places) {
        for (const QPoint place : places) {
            input.click(place);
            pause(1s);
        }
    };

    const QTemporaryDir home;
    const auto call = startChromium({.environment = session.environment(),
                                     .home = home.path(),
                                     .page = page("call.html", true),
                                     .place = callPlace,
                                     .isBare = true});
    await(QStringLiteral("Weekly call"));
    const QString area = QStringLiteral("--area=%1,%2,%3x%4")
                             .arg(shared.x())
                             .arg(filmed.height() - shared.y() - shared.height())
                             .arg(shared.width())
                             .arg(shared.height());
    const auto program
        = required(ChildProcess::start({.program = QStringLiteral(GLIMMERPANE_PROGRAM),
                                        .arguments = {area, QStringLiteral("--share")},
                                        .environment = session.environment()}));
    await(QStringLiteral("Glimmerpane - Output"));
    const auto document = openDocument(home.path(), true, session.environment());
    await(QStringLiteral("Spring report"));
    click(toDialog);
    for (const bool isPreview : {true, false}) { // GNOME 43 asks for both
        becomesDialog(true);
        click(inDialog);
        becomesDialog(false);
        click(std::array{isPreview ? shareInBrowser : hideNotice});
    }
    input.moveTo(inDocument);
    const auto isLive
        = [&] { return call->ask(QStringLiteral("shownWidth()")).toInt() == shared.width(); };
    const bool isShared = waitFor(isLive, patience);
    pause(1s); // the pointer has got there
    save(monitor->picture(), folder, QStringLiteral("gnome.png"));
    require(isShared, "the call in GNOME does not show the window; see gnome.png");
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
    const QTemporaryDir runtimeFolder; // else Qt leaves one behind where the session has none
    qputenv("XDG_RUNTIME_DIR", runtimeFolder.path().toLocal8Bit());
    const QGuiApplication application(argc, argv);
    try {
        require(argc == 2, "Usage: glimmerpane_pictures FOLDER");
        const QDir folder(QString::fromLocal8Bit(argv[1]));
        takeMainWindow(folder);
        takeTour(folder);
        takeGnome(folder);
    } catch (const Failure &problem) {
        qCritical("%s", problem.what());
        return 1;
    }
    return 0;
}
