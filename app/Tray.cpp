// SPDX-License-Identifier: MIT
#include "app/Tray.h"

#include "platform/SessionBus.h"

#include <QCoroFuture>
#include <QPointer>

#include <utility>

namespace glimmerpane
{

namespace
{

/** Commands whose failures the model shows in alerts, unless the user wanted them to fail. */
bool isToldByTheModel(const QStringList &arguments)
{
    const QStringList told{QStringLiteral("--share"), QStringLiteral("--select"),
                           QStringLiteral("--resume")};
    return told.contains(arguments.value(0));
}

} // namespace

Tray::Tray(MainViewModel &model, const AreaFrame &frame, Commands &commands, SettingsFile file,
           Windows windows)
    : model_(model)
    , frame_(frame)
    , commands_(commands)
    , file_(std::move(file))
    , windows_(std::move(windows))
{
    if (file_.isOn()) {
        show();
    }
}

QFuture<void> Tray::turn(bool on)
{
    if (!on) {
        icon_.reset();
    } else if (!icon_) {
        show();
    }
    return file_.save(on);
}

void Tray::show()
{
    if (!isSessionBusThere()) {
        return;
    }
    icon_ = std::make_unique<TrayIcon>(model_);
    icon_->setFrameShown(frame_.isOn());
    connect(&frame_, &AreaFrame::turned, icon_.get(), &TrayIcon::setFrameShown);
    connect(icon_.get(), &TrayIcon::commandChosen, this, &Tray::obey);
    connect(icon_.get(), &TrayIcon::quitChosen, this, &Tray::quit);
    connect(icon_.get(), &TrayIcon::menuOpening, this, &Tray::readAreaNames);
}

QCoro::Task<> Tray::readAreaNames()
{
    const QPointer self(this);
    auto reading = commands_.areaNames();
    const QStringList names = co_await reading;
    if (self && icon_) {
        icon_->setAreaNames(names);
    }
}

void Tray::obey(const QStringList &arguments)
{
    const QPointer self(this);
    const bool isTold = isToldByTheModel(arguments);
    commands_.obey({.arguments = arguments, .startupId = {}},
                   [self, isTold](const CommandResult &result) {
                       if (!self || result.exitCode == ExitCode::Succeeded) {
                           return;
                       }
                       // The model's own alert, if there is one, comes after this reply.
                       const QString text = isTold ? QString() : result.error;
                       QMetaObject::invokeMethod(
                           self, [self, text] { self->tellOfFailure(text); }, Qt::QueuedConnection);
                   });
}

void Tray::tellOfFailure(const QString &text)
{
    if (model_.isAlertShown()) {
        windows_.bringForward();
    } else if (!text.isEmpty()) {
        windows_.bringForward();
        model_.tellOfFailure(text);
    }
}

void Tray::quit()
{
    if (model_.isAlertShown()) { // the window cannot be closed under it
        windows_.bringForward();
        return;
    }
    if (model_.isSharingWindowOpen() || model_.isCheckingPermission()) {
        windows_.bringForward(); // it asks
    }
    windows_.close();
}

} // namespace glimmerpane
