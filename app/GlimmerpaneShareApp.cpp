// SPDX-License-Identifier: MIT
#include "app/GlimmerpaneShareApp.h"

#include "app/AppCoordinator.h"
#include "app/Log.h"
#include "app/SessionInterface.h"
#include "app/StoredAreas.h"
#include "app/UnixSignals.h"
#include "capture/ScreenCaptureService.h"
#include "platform/backends/Backends.h"
#include "storage/FrameRepository.h"
#include "storage/RestoreTokenFile.h"
#include "translations/Translations.h"
#include "update/DeviceIdentity.h"

#include <QApplication>
#include <QIcon>
#include <QPointer>
#include <QTimer>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <tuple>
#include <utility>

namespace glimmerpane
{

namespace
{

constexpr const char *version = GLIMMERPANE_VERSION;
constexpr std::chrono::milliseconds updateCheckDelay{500};

// While its overview closes, for a quarter of a second, GNOME ignores requests to activate a
// window.
constexpr std::chrono::milliseconds retryInterval{300};
constexpr int mostTries = 6;

class Application : public QApplication
{
public:
    using QApplication::QApplication;

protected:
    /**
     * Quit arrives when the desktop session ends and after the main window has closed. By default,
     * Qt would close all windows first, and the main window would ask for confirmation.
     */
    bool event(QEvent *event) override
    {
        if (event->type() == QEvent::Quit) {
            exit(0);
            return true;
        }
        return QApplication::event(event);
    }
};

int print(const CommandResult &result)
{
    if (!result.output.isEmpty()) {
        std::printf("%s\n", qPrintable(result.output));
    }
    if (!result.error.isEmpty()) {
        std::fprintf(stderr, "glimmerpane: %s\n", qPrintable(result.error));
    }
    return static_cast<int>(result.exitCode);
}

/** Ends the process without running destructors. */
[[noreturn]] void leave(int code)
{
    std::fflush(nullptr);
    std::_Exit(code);
}

QStringList argumentsOf(int argc, char **argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i) {
        arguments.append(QString::fromLocal8Bit(argv[i]));
    }
    return arguments;
}

/**
 * Qt calls exit() when the display server is gone, so this program's destructors never run. Call
 * this after the repository has loaded: static destruction runs in reverse order, and Qt's cache of
 * settings files must still exist.
 */
void finishAtExit(FrameRepository *repository)
{
    constexpr int longestWait = 2000; // milliseconds
    static const QPointer guarded(repository);
    std::atexit([] {
        if (guarded) {
            guarded->finish(longestWait);
        }
    });
}

std::unique_ptr<MainViewModel> makeViewModel(
    const Backend &backend, AlertPresenterProtocol &alerts,
    GlimmerpaneShareApp::UpdateRepositoryMaker makeUpdateRepository,
    std::function<void()> onOutputActivated)
{
    auto repository = std::make_unique<FrameRepository>(captureFrameFile());
    FrameRepository *const saves = repository.get();
    auto updateRepository = makeUpdateRepository();
    auto captureService = std::make_unique<ScreenCaptureService>(backend);
    auto coordinator = std::make_unique<AppCoordinator>(backend, std::move(onOutputActivated));
    auto model = std::make_unique<MainViewModel>(std::move(repository), std::move(updateRepository),
                                                 std::move(coordinator), std::move(captureService),
                                                 backend, alerts, deviceIdentity());
    finishAtExit(saves);
    return model;
}

/** Built into the program, so that it has an icon even when it is not installed. */
QIcon windowIcon()
{
    QIcon icon;
    icon.addFile(QStringLiteral(":/icons/48.png"));
    icon.addFile(QStringLiteral(":/icons/128.png"));
    return icon;
}

/** Runs until the user quits. Null if another launch became the session's instance first. */
std::optional<int> runEventLoop(const LaunchOptions &options,
                                GlimmerpaneShareApp::UpdateRepositoryMaker makeUpdateRepository)
{
    BackendRequest request{.name = options.backend.value_or(QString()),
                           .listsOutput = options.listsOutput.value_or(false)};
    auto backend = makeBackend(request, std::make_shared<RestoreTokenFile>(restoreTokenFile()));
    if (!backend) {
        return print(CommandResult::failure(backend.error().text));
    }
    request.name = backend->name;
    auto glimmerpane
        = std::make_unique<GlimmerpaneShareApp>(makeUpdateRepository, std::move(*backend), request);
    if (!glimmerpane->becomeTheInstance()) {
        return std::nullopt;
    }
    glimmerpane->launch(options);
    const int code = QApplication::exec();
    const bool isCheckingForUpdates = glimmerpane->isCheckingForUpdates();
    glimmerpane.reset();
    if (isCheckingForUpdates) {
        // Destroying the application waits for DNS lookups, which may take long to time out.
        leave(code);
    }
    return code;
}

/** Handles what needs no window. Otherwise returns the options to go on with. */
std::expected<LaunchOptions, CommandResult> settle(const CommandLine &commandLine)
{
    const auto parsed = launchOptions(commandLine.arguments);
    if (!parsed) {
        return std::unexpected(CommandResult::failure(parsed.error(), ExitCode::Misused));
    }
    const LaunchOptions &options = *parsed;
    if (options.help || options.version) {
        return std::unexpected(CommandResult{.exitCode = ExitCode::Succeeded,
                                             .output = options.help ? helpText().chopped(1)
                                                                    : QStringLiteral("glimmerpane ")
                                                     + QString::fromLatin1(version),
                                             .error = {}});
    }
    if (const auto result = handOver(commandLine)) {
        return std::unexpected(*result);
    }
    if (options.needsInstance()) {
        return std::unexpected(
            CommandResult::failure(LaunchOptions::tr("Glimmerpane is not running.")));
    }
    if (options.needsNoDisplay()) {
        return std::unexpected(obeyStored(options.areas));
    }
    if (const auto ready = prepareDesktop(); !ready) {
        return std::unexpected(CommandResult::failure(ready.error().text));
    }
    return options;
}

int runApplication(int argc, char **argv, const LaunchOptions &options,
                   const CommandLine &commandLine,
                   GlimmerpaneShareApp::UpdateRepositoryMaker makeUpdateRepository)
{
    QCoreApplication::setApplicationName(QStringLiteral("glimmerpane"));
    QCoreApplication::setApplicationVersion(QString::fromLatin1(version));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Glimmerpane"));
    QGuiApplication::setDesktopFileName(QStringLiteral("io.github.glimmerpane.Glimmerpane"));
    Application application(argc, argv);
    installTranslations();
    QApplication::setWindowIcon(windowIcon());
    qCInfo(appLog, "glimmerpane %s, Qt %s", version, qVersion());
    quitOnSignals(&application);
    if (const auto code = runEventLoop(options, makeUpdateRepository)) {
        return *code;
    }
    return print(handOver(commandLine)
                     .value_or(CommandResult::failure(
                         LaunchOptions::tr("The running Glimmerpane has just ended."))));
}

} // namespace

GlimmerpaneShareApp::GlimmerpaneShareApp(UpdateRepositoryMaker makeUpdateRepository,
                                         Backend backend, BackendRequest request)
    : shell_(backend.shell)
    , viewModel_(makeViewModel(backend, alerts_, makeUpdateRepository,
                               [this] { showInsteadOfOutput(mostTries); }))
    , areaFrame_(*viewModel_, backend, areaFrameFile())
    , shortcuts_(shortcutsFile(), *viewModel_, areaFrame_)
    , window_(*viewModel_, shell_)
    , commands_(
          *viewModel_, areaFrame_, shortcuts_, std::move(request), backend.presses != nullptr,
          [this](const QString &startupId) { bringForward(startupId); },
          [this](bool on) { return tray_.turn(on); })
    , tray_(*viewModel_, areaFrame_, commands_, trayFile(),
            {.bringForward = [this] { bringForward({}); }, .close = [this] { window_.close(); }})
    , bus_([this](const CommandLine &commandLine, const InstanceBus::Reply &reply) {
        commands_.obey(commandLine, reply);
    })
{
    serveSession(bus_.object(), *viewModel_, areaFrame_, commands_);
    obeyShortcuts();
    alerts_.setParentWindow(&window_);
    window_.installEventFilter(&areaFrame_);
    QObject::connect(&displayWatch_, &DisplayWatch::changed, viewModel_.get(),
                     &MainViewModel::displaysChanged);
}

void GlimmerpaneShareApp::launch(const LaunchOptions &options)
{
    // Set when a test harness hosts the program.
    if (!qEnvironmentVariableIsSet("XCTestConfigurationFilePath")) {
        scheduleUpdateCheck();
    }
    window_.show();
    if (!options.shortcuts) {
        shortcuts_.restore();
    }
    // Deferred into the event loop: a signal can end an alert's loop only once the main loop is
    // running.
    const auto obey = [this, options] {
        commands_.obey(options, [](const CommandResult &result) { print(result); });
    };
    QMetaObject::invokeMethod(&commands_, obey, Qt::QueuedConnection);
}

/** Failures are told by notifications: whoever presses such keys looks at another window. */
void GlimmerpaneShareApp::obeyShortcuts()
{
    const auto tell = [this](const QString &text) {
        if (!text.isEmpty()) {
            shell_->notify(QGuiApplication::applicationDisplayName(), text);
        }
    };
    QObject::connect(&shortcuts_, &Shortcuts::failed, &commands_, tell);
    QObject::connect(
        &shortcuts_, &Shortcuts::pressed, &commands_, [this, tell](const LaunchOptions &options) {
            commands_.obey(options, [tell](const CommandResult &result) { tell(result.error); });
        });
}

void GlimmerpaneShareApp::bringForward(const QString &startupId)
{
    window_.setWindowState(window_.windowState() & ~Qt::WindowMinimized);
    window_.show();
    window_.raise();
    window_.activateWindow(); // for when no window manager is running
    shell_->activateWindow(*window_.windowHandle(), startupId);
    if (QWidget *const alert = QApplication::activeModalWidget()) {
        alert->raise(); // otherwise the main window would cover it
        alert->activateWindow();
    }
}

/** The user has chosen the output window, which nobody is to see. */
void GlimmerpaneShareApp::showInsteadOfOutput(int tries)
{
    bringForward({});
    QTimer::singleShot(retryInterval, &window_, [this, tries] {
        if (tries > 1 && !shell_->isActive(*window_.windowHandle())) {
            showInsteadOfOutput(tries - 1);
        }
    });
}

void GlimmerpaneShareApp::scheduleUpdateCheck()
{
    if (qEnvironmentVariableIsEmpty("GLIMMERPANE_NO_UPDATE_CHECK")) {
        QTimer::singleShot(updateCheckDelay, viewModel_.get(),
                           [model = viewModel_.get()] { model->checkForUpdates(); });
    }
}

int runGlimmerpane(int argc, char **argv,
                   GlimmerpaneShareApp::UpdateRepositoryMaker makeUpdateRepository)
{
    const CommandLine commandLine{.arguments = argumentsOf(argc, argv),
                                  .startupId = qEnvironmentVariable("DESKTOP_STARTUP_ID")};
    const auto options = [&] {
        // Needed for translations. Unlike QApplication, it works without a display.
        const QCoreApplication application(argc, argv);
        installTranslations();
        return settle(commandLine);
    }();
    if (!options) {
        leave(print(options.error())); // the D-Bus thread may still be running
    }
    return runApplication(argc, argv, *options, commandLine, makeUpdateRepository);
}

} // namespace glimmerpane
