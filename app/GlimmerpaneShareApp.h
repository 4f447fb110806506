// SPDX-License-Identifier: MIT
#pragma once

#include "app/Commands.h"
#include "app/InstanceBus.h"
#include "app/LaunchOptions.h"
#include "model/MainViewModel.h"
#include "platform/Desktop.h"
#include "ui/Appearance.h"
#include "ui/MainWindow.h"
#include "ui/MessageBoxAlerts.h"

#include <memory>

namespace glimmerpane
{

/** Builds every long-lived object once and joins them. Main thread. */
class GlimmerpaneShareApp
{
public:
    using UpdateRepositoryMaker = std::unique_ptr<UpdateRepositoryProtocol> (*)();

    /** No update client, no update check. */
    GlimmerpaneShareApp(UpdateRepositoryMaker makeUpdateRepository,
                        OffscreenWindowKind outputWindow);
    ~GlimmerpaneShareApp();
    Q_DISABLE_COPY_MOVE(GlimmerpaneShareApp)

    /** Shows the main window and does what the command line asks for. */
    void launch(const LaunchOptions &options);

    /** What other launches hand over is done here from now on. False if another program has it. */
    bool becomeTheInstance() { return bus_.claimName(); }

    /** Whether the update service has been asked and has not answered yet. */
    bool isCheckingForUpdates() const { return viewModel_->isCheckingForUpdates(); }

private:
    void bringForward(const QString &startupId);
    void scheduleUpdateCheck();

    Appearance appearance_;
    const std::unique_ptr<Desktop> desktop_;
    MessageBoxAlerts alerts_;
    const std::unique_ptr<MainViewModel> viewModel_;
    MainWindow window_;
    Commands commands_;
    InstanceBus bus_;
};

/** The whole program, from the command line to the exit code: 0, 1 (failed) or 2 (usage). */
int runGlimmerpane(int argc, char **argv,
                   GlimmerpaneShareApp::UpdateRepositoryMaker makeUpdateRepository);

} // namespace glimmerpane
