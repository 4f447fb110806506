// SPDX-License-Identifier: MIT
#include "demo/Backdrop.h"
#include "rig/Browser.h"
#include "rig/CursorPicture.h"
#include "rig/InputInjector.h"
#include "rig/Program.h"
#include "rig/SessionBus.h"
#include "rig/SettingsPortal.h"
#include "rig/XWindows.h"

#include <QDir>
#include <QGuiApplication>

#include <cmath>

using namespace glimmerpane;
using namespace glimmerpane::demo;
using namespace std::chrono_literals;
using testing::required;

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
constexpr auto patience = 15s;

void require(bool holds, const char *what)
{
    if (!holds) {
        qFatal("%s", what);
    }
}

void save(const QImage &picture, const QDir &folder, const QString &name)
{
    require(picture.save(folder.filePath(name)), "cannot write a picture");
}

QUrl page(const char *name)
{
    return QUrl::fromLocalFile(QStringLiteral(PICTURES_PAGES "/") + QString::fromLatin1(name));
}

/** A person's pointer and keyboard. */
class Hand
{
public:
    explicit Hand(const Desktop &desktop)
        : desktop_(desktop)
        , input_(desktop.client())
    {
        input_.moveTo(place_);
    }

    void glide(QPoint to, std::chrono::milliseconds time = 800ms)
    {
        const QPoint from = place_;
        const auto begin = std::chrono::steady_clock::now();
        for (double part = 0; part < 1;) {
            desktop_.rest(12ms);
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
        desktop_.rest(100ms);
        input_.release();
        desktop_.rest(150ms);
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
            require((!isUpper || input_.pressKey(testing::keys::shift)) && input_.typeKey(keysym)
                        && (!isUpper || input_.releaseKey(testing::keys::shift)),
                    "the keyboard lacks a letter");
            desktop_.rest(130ms);
        }
    }

private:
    const Desktop &desktop_;
    testing::InputInjector input_;
    QPoint place_{330, 600};
};

/** The main window alone, light and dark, in which what its round corners leave is transparent. */
void takeMainWindow(const QDir &folder)
{
    const auto bus = required(testing::SessionBus::start());
    testing::SettingsPortal portal(bus.address());
    require(portal.isThere(), "cannot be the desktop's portal");
    const auto desktop = required(Desktop::start({.screen = screen, .bus = bus.address()}));
    constexpr QRgb key = 0xffff00ff;
    QImage background(screen, QImage::Format_RGB32);
    background.fill(key);
    required(setBackground(desktop->client(), background));
    auto program = required(Program::start(
        *desktop, {.executable = executableOr({}), .area = sharedArea, .share = true}));
    required(program.outputWindow());
    required(program.placeMainWindow(mainWindowPlace, sharedArea));
    const auto window = required(program.mainWindow());

    for (const auto &[scheme, name] :
         {std::pair(testing::SettingsPortal::light, QStringLiteral("main-window.png")),
          std::pair(testing::SettingsPortal::dark, QStringLiteral("main-window-dark.png"))}) {
        portal.change(scheme);
        const bool isDark = scheme == testing::SettingsPortal::dark;
        QImage picture;
        const auto isPainted = [&] {
            const auto place = testing::geometryOf(desktop->client(), window);
            picture = required(desktop->client().screenshot(place.value_or(QRect(0, 0, 1, 1))));
            return (qGray(picture.pixel(picture.rect().center().x(), 8)) < 128) == isDark
                && program.stopButton();
        };
        require(desktop->waitFor(isPainted, patience), "the main window does not change");
        picture.setAlphaChannel(picture.createMaskFromColor(key, Qt::MaskOutColor));
        save(picture, folder, name);
    }
    required(program.end());
}

xcb_window_t await(const Desktop &desktop, const QString &title)
{
    std::optional<xcb_window_t> window;
    const auto isThere = [&] {
        window = testing::findWindow(desktop.client(), title);
        return window.has_value();
    };
    require(desktop.waitFor(isThere, testing::browserPatience), "a browser's window is missing");
    return *window;
}

/** Puts a browser's window at a place, without the window manager's frame. */
void place(const Desktop &desktop, const QString &title, const QRect &rectangle)
{
    const auto &client = desktop.client();
    const auto window = await(desktop, title);
    constexpr uint32_t noFrame[] = {2, 0, 0, 0, 0}; // the decorations, which are none
    const auto hints = client.atom("_MOTIF_WM_HINTS");
    xcb_change_property(client.connection(), XCB_PROP_MODE_REPLACE, window, hints, hints, 32, 5,
                        noFrame);
    const auto isThere = [&] {
        const int values[] = {rectangle.x(), rectangle.y(), rectangle.width(), rectangle.height()};
        xcb_configure_window(client.connection(), window, 0xf, values); // place and size
        return testing::geometryOf(client, window) == rectangle;
    };
    require(desktop.waitFor(isThere, patience), "a browser's window does not go to its place");
}

/** The document, the call beside it and the program, whose main window is minimised. */
class Scene
{
public:
    Scene();

    const Desktop &desktop() const { return *desktop_; }
    Program &program() { return *program_; }
    void awaitCall();
    void openMainWindow();
    QImage screenshot() const;

private:
    QTemporaryDir home_;
    std::unique_ptr<Desktop> desktop_ = required(Desktop::start({.screen = screen}));
    std::unique_ptr<testing::Browser> call_;
    testing::ChildProcess document_;
    std::optional<Program> program_;
    xcb_window_t mainWindow_ = XCB_WINDOW_NONE;
};

Scene::Scene()
{
    required(setBackground(desktop_->client(), drawWallpaper(screen)));
    auto environment = desktop_->environment();
    environment.insert(QStringLiteral("HOME"), home_.path());
    call_ = testing::startChromium({.environment = environment,
                                    .home = home_.path(),
                                    .page = page("call.html"),
                                    .place = callPlace,
                                    .isBare = true});
    place(*desktop_, QStringLiteral("Weekly call"), callPlace);
    // A second window of the browser that runs, with all that has been said to that one.
    document_ = required(testing::ChildProcess::start(
        {.program = QStringLiteral("chromium"),
         .arguments = {QStringLiteral("--no-sandbox"), QStringLiteral("--test-type"),
                       QStringLiteral("--user-data-dir=%1/chromium").arg(home_.path()),
                       QStringLiteral("--app=") + page("document.html").toString()},
         .environment = environment}));
    place(*desktop_, QStringLiteral("Spring report"), documentPlace);
    program_
        = required(Program::start(*desktop_, {.executable = executableOr({}), .area = firstArea}));
    required(program_->placeMainWindow(mainWindowPlace, firstArea));
    constexpr uint32_t iconicState = 3; // ICCCM 4.1.4
    mainWindow_ = required(program_->mainWindow());
    testing::sendMessage(desktop_->client(), mainWindow_, "WM_CHANGE_STATE", iconicState,
                         desktop_->client().root());
    const auto isAway = [&] { return !testing::isViewable(desktop_->client(), mainWindow_); };
    require(desktop_->waitFor(isAway, patience), "the main window cannot be minimised");
}

void Scene::openMainWindow()
{
    constexpr uint32_t fromPager = 2; // as EWMH has it
    testing::sendMessage(desktop_->client(), mainWindow_, "_NET_ACTIVE_WINDOW", fromPager,
                         desktop_->client().root());
}

/** Returns once the others see the shared window. */
void Scene::awaitCall()
{
    const auto isLive
        = [&] { return call_->ask(QStringLiteral("shownWidth()")).toInt() == sharedArea.width(); };
    require(desktop_->waitFor(isLive, patience), "the call does not show the window");
}

QImage Scene::screenshot() const
{
    const auto cursor = required(testing::currentCursor(desktop_->client()));
    const auto picture = required(desktop_->client().screenshot({QPoint(), filmed}));
    return testing::withCursor(picture, {}, cursor);
}

/** Films the display until the tour has its length. */
testing::ChildProcess startFilm(const Desktop &desktop, const QString &path)
{
    auto film = required(testing::ChildProcess::start(
        {.program = QStringLiteral("ffmpeg"),
         .arguments = QStringLiteral("-y -nostdin -f x11grab -framerate 20 -video_size %1x%2 -i %3 "
                                     "-t %4 -c:v libx264rgb -preset ultrafast -qp 0")
                          .arg(filmed.width())
                          .arg(filmed.height())
                          .arg(desktop.displayName())
                          .arg(tourLength.count())
                          .split(u' ')
             << path}));
    require(desktop.waitFor([&] { return film.output().contains("frame="); }, patience),
            "ffmpeg does not film");
    return film;
}

/** Someone chooses an area, shares it, works in it and stops; the others' view stands beside. */
void takeTour(const QDir &folder)
{
    Scene scene;
    Program &program = scene.program();
    Hand hand(scene.desktop());
    auto camera = startFilm(scene.desktop(), folder.filePath(QStringLiteral("tour.mkv")));
    const auto begin = std::chrono::steady_clock::now();
    const auto until = [&](std::chrono::milliseconds time) {
        const auto left = begin + time - std::chrono::steady_clock::now();
        scene.desktop().rest(std::chrono::duration_cast<std::chrono::milliseconds>(left));
    };

    until(500ms);
    scene.openMainWindow();
    hand.glide(required(program.awaitSetArea()), 1000ms);
    required(program.openSelector());
    const QRect moved(sharedArea.topLeft(), firstArea.size());
    hand.drag(firstArea.topLeft() + inSelector, moved.topLeft() + inSelector);
    hand.drag(moved.bottomRight(), sharedArea.bottomRight() + QPoint(1, 1));
    hand.glide(sharedArea.center() + besideConfirm, 700ms);
    save(scene.screenshot(), folder, QStringLiteral("selector.png"));
    hand.click(sharedArea.center() + besideConfirm, 200ms);
    required(program.awaitSetArea()); // which can be pressed with "Start sharing"
    hand.click(program.startButton().value(), 700ms);
    required(program.outputWindow());
    hand.click(callButton, 900ms);
    scene.desktop().rest(200ms);
    for (const QPoint step : chooserSteps) {
        hand.click(step, 600ms);
        scene.desktop().rest(150ms);
    }
    scene.awaitCall();
    hand.click(firstBar, 900ms);
    hand.click(emptyStep, 900ms);
    hand.type("Publish on Friday");
    hand.click(lastBar, 900ms);
    save(scene.screenshot(), folder, QStringLiteral("call.png"));
    until(17s);
    hand.click(program.stopButton().value(), 800ms);
    require(std::chrono::steady_clock::now() - begin < tourLength, "too slow for the film");
    require(camera.waitForEnd(tourLength) && camera.exitCode() == 0, "ffmpeg failed");
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
    const QTemporaryDir runtimeFolder; // else Qt leaves one behind where the session has none
    qputenv("XDG_RUNTIME_DIR", runtimeFolder.path().toLocal8Bit());
    const QGuiApplication application(argc, argv);
    require(argc == 2, "Usage: glimmerpane_pictures FOLDER");
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    takeMainWindow(folder);
    takeTour(folder);
    return 0;
}
