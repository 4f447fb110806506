// SPDX-License-Identifier: MIT
#include "app/GlimmerpaneShareApp.h"

#include "app/AppCoordinator.h"
#include "app/UnixSignals.h"
#include "capture/ScreenCaptureService.h"
#include "platform/x11/X11Desktop.h"
#include "storage/FrameRepository.h"

#include <QApplication>
#include <QIcon>
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

enum ExitCode {
    succeeded = 0,
    failed = 1,
    misused = 2,
};

constexpr const char *version = GLIMMERPANE_VERSION;
constexpr std::chrono::milliseconds updateCheckDelay{500};

int complain(const QString &message, ExitCode code)
{
    std::fprintf(stderr, "glimmerpane: %s\n", qPrintable(message));
    return code;
}

QStringList argumentsOf(int argc, char **argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i) {
        arguments.append(QString::fromLocal8Bit(argv[i]));
    }
    return arguments;
}

std::unique_ptr<MainViewModel> makeViewModel(
    Desktop &desktop, AlertPresenterProtocol &alerts,
    GlimmerpaneShareApp::UpdateRepositoryMaker makeUpdateRepository)
{
    auto repository
        = std::make_unique<FrameRepository>(standardUserDefaults(), QStringLiteral("captureFrame"));
    auto updateRepository = makeUpdateRepository();
    auto captureService = std::make_unique<ScreenCaptureService>(desktop);
    auto coordinator = std::make_unique<AppCoordinator>(desktop);
    return std::make_unique<MainViewModel>(std::move(repository), std::move(updateRepository),
                                           std::move(coordinator), std::move(captureService),
                                           desktop, alerts);
}

/** Part of the program, so that it has its icon where it is not installed, too. */
QIcon windowIcon()
{
    QIcon icon;
    icon.addFile(QStringLiteral(":/icons/48.png"));
    icon.addFile(QStringLiteral(":/icons/128.png"));
    return icon;
}

/** Until the person quits. */
int runEventLoop(const LaunchOptions &options,
                 GlimmerpaneShareApp::UpdateRepositoryMaker makeUpdateRepository)
{
    auto glimmerpane
        = std::make_unique<GlimmerpaneShareApp>(makeUpdateRepository, options.outputWindow);
    glimmerpane->launch(options);
    const int code = QApplication::exec();
    const bool isCheckingForUpdates = glimmerpane->isCheckingForUpdates();
    glimmerpane.reset();
    if (isCheckingForUpdates) {
        // Taking down the application waits for lookups of names, and a name server may be silent.
        std::fflush(nullptr);
        std::_Exit(code);
    }
    return code;
}

} // namespace

GlimmerpaneShareApp::GlimmerpaneShareApp(UpdateRepositoryMaker makeUpdateRepository,
                                         OffscreenWindowKind outputWindow)
    : desktop_(std::make_unique<x11::X11Desktop>(outputWindow))
    , viewModel_(makeViewModel(*desktop_, alerts_, makeUpdateRepository))
    , window_(*viewModel_)
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
    if (options.area) {
        const auto &[x, y, width, height] = *options.area;
        viewModel_->updateFrame(x, y, width, height);
    }
    // Set where a test harness hosts the program, which then has to leave the screen alone.
    if (!qEnvironmentVariableIsSet("XCTestConfigurationFilePath")) {
        requestPermission();
        scheduleUpdateCheck();
    }
    window_.show();
    if (options.share) {
        viewModel_->startSharing();
    }
}

void GlimmerpaneShareApp::requestPermission()
{
    // A desktop that asks the person for permission does it now, not in the middle of a call.
    std::ignore = QtConcurrent::run([&desktop = *desktop_] { return desktop.shareableContent(); });
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
    const auto options = launchOptions(argumentsOf(argc, argv));
    if (!options) {
        return complain(options.error(), misused);
    }
    if (options->help) {
        std::printf("%s", qPrintable(helpText()));
        return succeeded;
    }
    if (options->version) {
        std::printf("glimmerpane %s\n", version);
        return succeeded;
    }
    if (const auto display = x11::checkDisplay(); !display) {
        return complain(display.error().text, failed);
    }
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "xcb");
    }
    QCoreApplication::setApplicationName(QStringLiteral("glimmerpane"));
    QCoreApplication::setApplicationVersion(QString::fromLatin1(version));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Glimmerpane"));
    QGuiApplication::setDesktopFileName(QStringLiteral("io.github.glimmerpane.Glimmerpane"));
    QApplication application(argc, argv);
    QApplication::setWindowIcon(windowIcon());
    quitOnSignals(&application);
    return runEventLoop(*options, makeUpdateRepository);
}

} // namespace glimmerpane
