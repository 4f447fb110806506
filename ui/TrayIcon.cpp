// SPDX-License-Identifier: MIT
#include "ui/TrayIcon.h"

#include "model/MainViewModel.h"
#include "ui/Log.h"

#include <QGuiApplication>

#include <utility>

namespace glimmerpane
{

namespace
{

QString toolTip(TrayState state)
{
    switch (state) {
    case TrayState::Starting:
        return TrayIcon::tr("Glimmerpane: sharing is starting");
    case TrayState::Sharing:
        return TrayIcon::tr("Glimmerpane: the area is shared");
    case TrayState::Unwatched:
        return TrayIcon::tr("Glimmerpane: the area is shared, but nobody is watching yet");
    case TrayState::Paused:
        return TrayIcon::tr("Glimmerpane: sharing is paused");
    case TrayState::Idle:
        break;
    }
    return TrayIcon::tr("Glimmerpane: nothing is shared");
}

} // namespace

TrayIcon::TrayIcon(const MainViewModel &model)
    : model_(model)
{
    for (const auto signal : {&MainViewModel::objectWillChange, &MainViewModel::startingChanged,
                              &MainViewModel::sharedFrameChanged, &MainViewModel::pausedChanged,
                              &MainViewModel::watchedChanged}) {
        connect(&model_, signal, this, &TrayIcon::scheduleRefresh);
    }
    connect(&menu_, &TrayMenu::commandChosen, this, &TrayIcon::commandChosen);
    connect(&menu_, &TrayMenu::quitChosen, this, &TrayIcon::quitChosen);
    connect(&menu_, &TrayMenu::opening, this, &TrayIcon::menuOpening);
    connect(&host_, &TrayHost::found, this, &TrayIcon::show);
    refresh();
}

/** Not earlier: Qt looks for the desktop's tray only once, when it makes the first icon. */
void TrayIcon::show()
{
    if (icon_) {
        return; // Qt registers it again with a new watcher
    }
    qCInfo(uiLog, "the desktop has a tray");
    icon_ = std::make_unique<QSystemTrayIcon>();
    icon_->setContextMenu(&menu_.menu());
    connect(icon_.get(), &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason reason) {
                if (reason != QSystemTrayIcon::Context) {
                    Q_EMIT commandChosen({}); // which shows the window
                }
            });
    shown_.reset();
    refresh();
    icon_->show();
    Q_EMIT menuOpening(); // some desktops read the whole menu before anybody opens it
}

void TrayIcon::setFrameShown(bool isShown)
{
    isFrameShown_ = isShown;
    scheduleRefresh();
}

TrayState TrayIcon::state() const
{
    if (model_.isPaused()) {
        return TrayState::Paused;
    }
    if (model_.sharedFrame()) {
        return model_.isWatched().value_or(true) ? TrayState::Sharing : TrayState::Unwatched;
    }
    return model_.isCheckingPermission() || model_.isSharingWindowOpen() ? TrayState::Starting
                                                                         : TrayState::Idle;
}

/** The model tells of changes one by one, and of some before they have happened. */
void TrayIcon::scheduleRefresh()
{
    if (!std::exchange(isRefreshScheduled_, true)) {
        QMetaObject::invokeMethod(this, &TrayIcon::refresh, Qt::QueuedConnection);
    }
}

void TrayIcon::refresh()
{
    isRefreshScheduled_ = false;
    const TrayState now = state();
    menu_.adapt({.isShared = now != TrayState::Idle,
                 .isPaused = now == TrayState::Paused,
                 .canStart = now == TrayState::Idle && !model_.isFrameSelectorOpen(),
                 .hasFrame = isFrameShown_});
    if (icon_ && std::exchange(shown_, now) != now) {
        icon_->setIcon(trayPicture(QGuiApplication::windowIcon(), now));
        icon_->setToolTip(toolTip(now));
    }
}

} // namespace glimmerpane
