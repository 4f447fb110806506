// SPDX-License-Identifier: MIT
#pragma once

#include "app/AreaFrame.h"
#include "app/Commands.h"
#include "app/InstanceBus.h"
#include "app/LaunchOptions.h"
#include "app/Shortcuts.h"
#include "app/Tray.h"
#include "model/MainViewModel.h"
#include "platform/Backend.h"
#include "platform/DisplayWatch.h"
#include "ui/Appearance.h"
#include "ui/MainWindow.h"
#include "ui/MessageBoxAlerts.h"

#include <memory>

namespace glimmerpane
{

/** Creates all long-lived objects and connects them. Main thread. */
class GlimmerpaneShareApp
{
public:
    using UpdateRepositoryMaker = std::unique_ptr<UpdateRepositoryProtocol> (*)();

    /** Without an update client there is no update check. */
    GlimmerpaneShareApp(UpdateRepositoryMaker makeUpdateRepository, Backend backend,
                        BackendRequest request);
    Q_DISABLE_COPY_MOVE(GlimmerpaneShareApp)

    /** Shows the main window and carries out the command line. */
    void launch(const LaunchOptions &options);

    /** Accepts commands from other launches from now on. False if another instance already does. */
    bool becomeTheInstance() { return bus_.claimName(); }

    /** Whether an update request is still unanswered. */
    bool isCheckingForUpdates() const { return viewModel_->isCheckingForUpdates(); }

private:
    void bringForward(const QString &startupId);
    void showInsteadOfOutput(int tries);
    void scheduleUpdateCheck();
    void obeyShortcuts();

    Appearance appearance_;
    const std::shared_ptr<Shell> shell_;
    MessageBoxAlerts alerts_;
    const std::unique_ptr<MainViewModel> viewModel_;
    AreaFrame areaFrame_;
    Shortcuts shortcuts_;
    const DisplayWatch displayWatch_;
    MainWindow window_;
    Commands commands_;
    Tray tray_;
    InstanceBus bus_;
};

/** Runs the whole program. Returns the exit code: 0, 1 (failed) or 2 (usage). */
int runGlimmerpane(int argc, char **argv,
                   GlimmerpaneShareApp::UpdateRepositoryMaker makeUpdateRepository);

} // namespace glimmerpane
