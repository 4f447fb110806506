// SPDX-License-Identifier: MIT
#include "app/GlimmerpaneShareApp.h"

#include "app/AppCoordinator.h"
#include "app/Log.h"
#include "app/UnixSignals.h"
#include "capture/ScreenCaptureService.h"
#include "platform/x11/X11Desktop.h"
#include "storage/FrameRepository.h"
#include "translations/Translations.h"
#include "update/DeviceIdentity.h"

#include <QApplication>
#include <QIcon>
#include <QPointer>
#include <QThreadPool>
#include <QTimer>
#include <QtConcurrent>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <tuple>
#include <utility>

namespace glimmerpane
{

namespace
{

constexpr const char *version = GLIMMERPANE_VERSION;
constexpr std::chrono::milliseconds updateCheckDelay{500};

class Application : public QApplication
{
public:
    using QApplication::QApplication;

protected:
    /**
     * Comes when the desktop's session ends, and after the main window has closed. Qt would first
     * close all windows as a person does, and be asked whether that is meant.
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

/** Ends the program without taking anything down. */
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
 * Qt calls exit() when the X server goes, and then no destructor of this program runs. To be called
 * after the repository has loaded: what Qt keeps of settings files is destroyed in reverse order.
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
    Desktop &desktop, AlertPresenterProtocol &alerts,
    GlimmerpaneShareApp::UpdateRepositoryMaker makeUpdateRepository)
{
    auto repository = std::make_unique<FrameRepository>(captureFrameFile());
    FrameRepository *const saves = repository.get();
    auto updateRepository = makeUpdateRepository();
    auto captureService = std::make_unique<ScreenCaptureService>(desktop);
    auto coordinator = std::make_unique<AppCoordinator>(desktop);
    auto model = std::make_unique<MainViewModel>(std::move(repository), std::move(updateRepository),
                                                 std::move(coordinator), std::move(captureService),
                                                 desktop, alerts, deviceIdentity());
    finishAtExit(saves);
    return model;
}

/** Part of the program, so that it has its icon where it is not installed, too. */
QIcon windowIcon()
{
    QIcon icon;
    icon.addFile(QStringLiteral(":/icons/48.png"));
    icon.addFile(QStringLiteral(":/icons/128.png"));
    return icon;
}

/** Until the person quits. Nothing if another launch was quicker to be the session's program. */
std::optional<int> runEventLoop(const LaunchOptions &options,
                                GlimmerpaneShareApp::UpdateRepositoryMaker makeUpdateRepository)
{
    auto glimmerpane = std::make_unique<GlimmerpaneShareApp>(
        makeUpdateRepository, options.outputWindow.value_or(OffscreenWindowKind::Unlisted));
    if (!glimmerpane->becomeTheInstance()) {
        return std::nullopt;
    }
    glimmerpane->launch(options);
    const int code = QApplication::exec();
    const bool isCheckingForUpdates = glimmerpane->isCheckingForUpdates();
    glimmerpane.reset();
    if (isCheckingForUpdates) {
        // Taking down the application waits for lookups of names, and a name server may be silent.
        leave(code);
    }
    return code;
}

/** What is settled without a window, or the options to go on with. */
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
    if (options.stop || options.status) {
        return std::unexpected(
            CommandResult::failure(LaunchOptions::tr("Glimmerpane is not running.")));
    }
    if (const auto display = x11::checkDisplay(); !display) {
        return std::unexpected(CommandResult::failure(display.error().text));
    }
    return options;
}

int runApplication(int argc, char **argv, const LaunchOptions &options,
                   const CommandLine &commandLine,
                   GlimmerpaneShareApp::UpdateRepositoryMaker makeUpdateRepository)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "xcb");
    }
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
                                         OffscreenWindowKind outputWindow)
    : desktop_(std::make_unique<x11::X11Desktop>(outputWindow))
    , viewModel_(makeViewModel(*desktop_, alerts_, makeUpdateRepository))
    , window_(*viewModel_, *desktop_)
    , commands_(*viewModel_, outputWindow,
                [this](const QString &startupId) { bringForward(startupId); })
    , bus_([this](const CommandLine &commandLine, const InstanceBus::Reply &reply) {
        commands_.obey(commandLine, reply);
    })
{
    alerts_.setParentWindow(&window_);
}

GlimmerpaneShareApp::~GlimmerpaneShareApp()
{
    // What still runs in the background uses the desktop.
    QThreadPool::globalInstance()->waitForDone();
}

void GlimmerpaneShareApp::launch(const LaunchOptions &options)
{
    // Set where a test harness hosts the program.
    if (!qEnvironmentVariableIsSet("XCTestConfigurationFilePath")) {
        scheduleUpdateCheck();
    }
    window_.show();
    // In the event loop: a signal could end that of an alert, but not one that has yet to begin.
    const auto obey = [this, options] {
        commands_.obey(options, [](const CommandResult &result) { print(result); });
    };
    QMetaObject::invokeMethod(&commands_, obey, Qt::QueuedConnection);
}

void GlimmerpaneShareApp::bringForward(const QString &startupId)
{
    window_.setWindowState(window_.windowState() & ~Qt::WindowMinimized);
    window_.show();
    window_.raise();
    window_.activateWindow(); // where no window manager runs
    desktop_->activateWindow(static_cast<std::uint32_t>(window_.winId()), startupId);
    if (QWidget *const alert = QApplication::activeModalWidget()) {
        alert->raise(); // else the main window hides it there
        alert->activateWindow();
    }
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
        // It translates, and unlike that of the windows it needs no display.
        const QCoreApplication application(argc, argv);
        installTranslations();
        return settle(commandLine);
    }();
    if (!options) {
        leave(print(options.error())); // the bus's thread may run still
    }
    return runApplication(argc, argv, *options, commandLine, makeUpdateRepository);
}

} // namespace glimmerpane
