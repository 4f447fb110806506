// SPDX-License-Identifier: MIT
#include "rig/ProgramFixture.h"

#include "rig/CapturedWindow.h"
#include "rig/CursorPicture.h"
#include "rig/PictureComparison.h"
#include "rig/ProcessUsage.h"
#include "rig/WaitFor.h"
#include "rig/WindowManager.h"
#include "rig/XWindows.h"
#include "storage/CaptureFrameJson.h"

#include <QColor>
#include <QFile>
#include <QSettings>
#include <QTest>

#include <algorithm>
#include <csignal>

namespace glimmerpane::testing
{

namespace
{

const QString outputTitle = QStringLiteral("Glimmerpane - Output");
const QString mainTitle = QStringLiteral("Glimmerpane");
const QString selectorTitle = QStringLiteral("Glimmerpane - Area");

} // namespace

ProgramFixture::ProgramFixture(WindowManager manager, int scale, QSize screen)
    : server(required(XvfbServer::start({.screen = screen})))
    , client(required(XClient::connect(server.displayName())))
    , input(client)
    , scaleFactor(scale)
    , environment(server.environment())
{
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), configuration.path());
    for (const char *name : {"XDG_CACHE_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR"}) {
        environment.insert(QString::fromLatin1(name), scratch_.path());
    }
    environment.insert(QStringLiteral("QT_SCALE_FACTOR"), QString::number(scale));
    const auto *const found = std::ranges::find(managerPrograms, manager, &ManagerProgram::manager);
    if (found != managerPrograms.end()) {
        windowManager_ = required(startWindowManager(
            client,
            {.program = QStringLiteral("sh"),
             .arguments = {QStringLiteral("-c"),
                           QStringLiteral("exec ") + QString::fromLatin1(found->command)},
             .environment = server.environment()}));
    }
    if (manager == WindowManager::OpenboxAndPicom) { // without the distribution's shadows and fades
        compositor_ = required(
            startCompositor(client,
                            {.program = QStringLiteral("picom"),
                             .arguments = {QStringLiteral("--config"), QStringLiteral("/dev/null")},
                             .environment = server.environment()}));
    }
}

void ProgramFixture::start(const QStringList &arguments)
{
    program = ChildProcess();
    program = required(ChildProcess::start(
        {.program = executable, .arguments = arguments, .environment = environment}));
}

void ProgramFixture::startWith(const QRect &area, QPoint mainWindowPlace, bool share)
{
    // Points count from the bottom-left corner, y up.
    QStringList arguments{QStringLiteral("--area=%1,%2,%3x%4")
                              .arg(area.x())
                              .arg(client.rootSize().height() - area.y() - area.height())
                              .arg(area.width())
                              .arg(area.height())};
    if (share) {
        arguments << QStringLiteral("--share");
    }
    start(arguments);
    moveMainWindow(mainWindowPlace);
    if (share) {
        awaitOutputWindow();
    }
}

void ProgramFixture::startBus()
{
    bus = required(SessionBus::start());
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), bus->address());
}

int ProgramFixture::launchAgain(const QStringList &arguments, QByteArray *says) const
{
    auto second = required(ChildProcess::start(
        {.program = executable, .arguments = arguments, .environment = environment}));
    const bool hasEnded = second.waitForEnd(patience);
    if (says != nullptr) {
        *says = second.output();
    }
    return hasEnded ? second.exitCode().value_or(-1) : -1;
}

int ProgramFixture::waitForExit()
{
    program.waitForEnd(patience);
    const int code = program.exitCode().value_or(-1);
    if (code != 0) {
        qInfo("%s", program.output().constData());
    }
    return code;
}

void ProgramFixture::end()
{
    program.sendSignal(SIGTERM);
    requireOf(waitForExit() == 0, "does not end as it should");
}

std::optional<xcb_window_t> ProgramFixture::mainWindow() const
{
    const auto isMain = [this](xcb_window_t window) {
        return titleOf(client, window) == mainTitle && isViewable(client, window);
    };
    if (!latestMain_ || !isMain(*latestMain_)) {
        const auto windows = listWindows(client, Listing::All);
        const auto found = std::ranges::find_if(windows, isMain);
        latestMain_ = found == windows.end() ? std::nullopt : std::optional(*found);
    }
    return latestMain_;
}

std::optional<xcb_window_t> ProgramFixture::alert() const
{
    const auto main = mainWindow();
    for (const auto window : listWindows(client, Listing::All)) {
        if (window != main && titleOf(client, window) == mainTitle && isViewable(client, window)) {
            return window;
        }
    }
    return std::nullopt;
}

std::optional<xcb_window_t> ProgramFixture::outputWindow() const
{
    return findWindow(client, outputTitle);
}

std::optional<xcb_window_t> ProgramFixture::selector() const
{
    if (!latestSelector_ || !isViewable(client, *latestSelector_)) {
        latestSelector_ = findWindow(client, selectorTitle, Listing::All);
    }
    return latestSelector_ && isViewable(client, *latestSelector_) ? latestSelector_ : std::nullopt;
}

int ProgramFixture::shownWindows() const
{
    const auto windows = listWindows(client, Listing::All);
    return static_cast<int>(std::ranges::count_if(windows, [this](xcb_window_t window) {
        return pidOf(client, window) == program.pid() && isViewable(client, window)
            && titleOf(client, window) != outputTitle;
    }));
}

bool ProgramFixture::waitForMainWindow() const
{
    return waitFor([this] { return mainWindow().has_value(); }, patience);
}

void ProgramFixture::moveMainWindow(QPoint place) const
{
    requireOf(waitForMainWindow(), "shows no main window");
    const QSize size = geometryOf(client, *mainWindow())->size();
    setGeometry(client, *mainWindow(), QRect(place, size));
    const auto isThere = [&] { return geometryOf(client, *mainWindow())->topLeft() == place; };
    requireOf(waitFor(isThere, patience), "does not take its main window where asked");
}

xcb_window_t ProgramFixture::awaitOutputWindow()
{
    const auto hasAnswered = [this] { return outputWindow() || !program.isRunning(); };
    requireOf(waitFor(hasAnswered, patience) && outputWindow(), "shares nothing");
    return *outputWindow();
}

void ProgramFixture::requireOf(bool holds, const char *otherwise) const
{
    if (!holds) {
        throw Failure(QStringLiteral("the program %1; it said: %2")
                          .arg(QString::fromLatin1(otherwise),
                               QString::fromLocal8Bit(program.output()).trimmed()));
    }
}

bool ProgramFixture::showsArea(QRect rootRectangle)
{
    const auto actual = [this] {
        const auto window = outputWindow();
        return window ? windowPicture(client, *window).value_or(QImage()) : QImage();
    };
    const auto expected = [&] {
        const QImage pixels = required(client.screenshot(rootRectangle));
        const auto cursor = currentCursor(client);
        return cursor ? withCursor(pixels, rootRectangle.topLeft(), *cursor) : pixels;
    };
    return becomeEqual(actual, expected, patience);
}

bool ProgramFixture::waitForNoOutput() const
{
    return waitFor([this] { return !outputWindow(); }, patience);
}

bool ProgramFixture::isCapturing() const
{
    const auto usage = ProcessUsage::of(program.pid());
    return usage && std::ranges::any_of(usage->threads, [](const ThreadUsage &thread) {
               return thread.name == u"captureQueue";
           });
}

bool ProgramFixture::startAgain() const
{
    return waitFor(
        [this] {
            click(places::startSharing);
            return outputWindow().has_value();
        },
        patience);
}

bool ProgramFixture::stopSharing() const
{
    return waitFor(
        [this] {
            click(places::stopSharing);
            return waitFor([this] { return !outputWindow(); }, std::chrono::seconds(1));
        },
        patience);
}

void ProgramFixture::click(QPoint place) const
{
    QVERIFY(mainWindow());
    input.click(placeOf(place));
}

QPoint ProgramFixture::placeOf(QPoint place) const
{
    return geometryOf(client, mainWindow().value()).value().topLeft() + place * scaleFactor;
}

bool ProgramFixture::canPress(QPoint button) const
{
    constexpr QPoint besideLabel(-120, 0);
    const auto pixel = client.screenshot(QRect(placeOf(button + besideLabel), QSize(1, 1)));
    return pixel && QColor(pixel->pixel(0, 0)).hsvSaturation() > 110;
}

QPoint ProgramFixture::awaitButton(QPoint button) const
{
    requireOf(waitFor([&] { return canPress(button); }, patience), "keeps a button disabled");
    return placeOf(button);
}

bool ProgramFixture::answerAlert(std::uint32_t key) const
{
    const int before = shownWindows();
    return waitFor(
        [&] {
            if (const auto window = alert()) { // there may be no manager that gives it the focus
                input.setFocus(*window);
            }
            return input.typeKey(key)
                && waitFor([&] { return shownWindows() < before; }, std::chrono::seconds(1));
        },
        patience);
}

bool ProgramFixture::typeArea(const CaptureFrame &area) const
{
    const double numbers[] = {area.x, area.y, area.width, area.height};
    for (std::size_t i = 0; i < std::size(numbers); ++i) {
        if (!type(places::fields[i], QByteArray::number(numbers[i]))) {
            return false;
        }
    }
    return waitFor([&] { return savedArea() == area; }, patience);
}

bool ProgramFixture::type(QPoint field, const QByteArray &text) const
{
    // Without a window manager, nothing gives the window the keyboard focus. With one, a click is
    // held back while the manager decides on the focus, and keys typed at machine speed would
    // overtake it.
    input.setFocus(*mainWindow());
    click(field);
    if (!waitFor([&] { return isFocused(field); }, patience)) {
        return false;
    }
    bool isTyped
        = input.pressKey(keys::control) && input.typeKey('a') && input.releaseKey(keys::control);
    for (const char letter : text) {
        isTyped = isTyped && input.typeKey(static_cast<std::uint32_t>(letter));
    }
    return isTyped;
}

bool ProgramFixture::isFocused(QPoint field) const
{
    // A focused field has a blue border; everything else around the fields is grey.
    const QPoint center = placeOf(field);
    const QSize around = QSize(4, 40) * scaleFactor;
    const QImage picture = required(
        client.screenshot(QRect(center - QPoint(around.width(), around.height()) / 2, around)));
    for (int y = 0; y < picture.height(); ++y) {
        const QColor color = picture.pixelColor(0, y);
        if (color.blue() > color.red() + 40) {
            return true;
        }
    }
    return false;
}

QString ProgramFixture::settingsFile() const
{
    return configuration.filePath(QStringLiteral("glimmerpane/glimmerpane.ini"));
}

std::optional<CaptureFrame> ProgramFixture::savedArea() const
{
    // QSettings keeps what it knows of a path for as long as the file's time and size stay.
    const QTemporaryDir elsewhere;
    const QString copy = elsewhere.filePath(QStringLiteral("copy.ini"));
    QFile::copy(settingsFile(), copy);
    const QSettings settings(copy, QSettings::IniFormat);
    return captureFrameFromJson(settings.value(QStringLiteral("captureFrame")).toByteArray());
}

} // namespace glimmerpane::testing
