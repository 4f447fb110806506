// SPDX-License-Identifier: MIT
#include "app/Shortcuts.h"

#include "app/Log.h"

#include <QCoroFuture>
#include <QPointer>

#include <utility>

namespace glimmerpane
{

namespace
{

// Desktops keep the user's keys under these.
const QString toggleSharing = QStringLiteral("toggle-sharing");
const QString togglePause = QStringLiteral("toggle-pause");
const QString toggleFrame = QStringLiteral("toggle-frame");

} // namespace

Shortcuts::Shortcuts(SettingsFile file, const MainViewModel &model, const AreaFrame &frame)
    : file_(std::move(file))
    , model_(model)
    , frame_(frame)
{
}

QCoro::Task<> Shortcuts::restore()
{
    if (file_.isOn()) {
        const QPointer self(this);
        const auto opened = co_await open();
        if (self && !opened) {
            qCWarning(appLog, "no shortcuts: %s", qPrintable(opened.error().text));
        }
    }
}

QCoro::Task<Shortcuts::Result> Shortcuts::turn(bool on)
{
    if (!on) {
        portal_.reset();
    } else if (!isBound_ || !portal_) {
        const QPointer self(this);
        const auto opened = co_await open();
        if (!self || !opened) {
            co_return opened;
        }
    }
    auto written = file_.save(on);
    co_await written;
    co_return Result();
}

/** Asks the desktop anew; what has been asked before is withdrawn. */
QCoro::Task<Shortcuts::Result> Shortcuts::open()
{
    portal_ = std::make_unique<Portal>();
    isBound_ = false;
    connect(portal_.get(), &Portal::pressed, this, &Shortcuts::handle);
    const QPointer self(this);
    const QPointer portal(portal_.get());
    const auto end = [this, portal](bool portalHasLeft) {
        if (portal) {
            handleEnd(portalHasLeft);
        }
    };
    // Queued, because it destroys the sender.
    connect(portal_.get(), &Portal::ended, this, end, Qt::QueuedConnection);
    auto opened = co_await portal->open();
    if (!self || !portal) {
        co_return std::unexpected(
            Error{.text = tr("The shortcuts were turned on or off again meanwhile."), .log = {}});
    }
    if (opened) {
        bind();
    } else {
        qCInfo(appLog, "no shortcuts: %s", qPrintable(opened.error().log));
        portal_.reset();
    }
    co_return opened;
}

QCoro::Task<> Shortcuts::bind()
{
    const QPointer self(this);
    const QPointer portal(portal_.get());
    const std::vector<Portal::Shortcut> shortcuts{
        {.id = toggleSharing, .description = tr("Start or stop sharing")},
        {.id = togglePause, .description = tr("Pause sharing or go on")},
        {.id = toggleFrame, .description = tr("Show or hide the frame around the area")}};
    const auto bound = co_await portal->bind(shortcuts);
    if (!self || !portal) {
        co_return;
    }
    isBound_ = bound.has_value();
    if (!bound) {
        qCInfo(appLog, "no shortcuts: %s", qPrintable(bound.error().log));
        portal_.reset();
        if (bound.error().outcome == Outcome::cancelled) {
            file_.save(false);
        }
        Q_EMIT failed(bound.error().text);
    }
}

void Shortcuts::handle(const QString &id)
{
    LaunchOptions options;
    if (id == toggleSharing) {
        const bool isShared = model_.isSharingWindowOpen() || model_.isCheckingPermission();
        options.share = !isShared;
        options.stop = isShared;
    } else if (id == togglePause) {
        options.order = SessionOrder::TogglePause;
    } else if (id == toggleFrame) {
        options.frame = !frame_.isOn();
    }
    if (options.asksForSomething()) {
        Q_EMIT pressed(options);
    }
}

/** A portal that has left comes back when it is asked for something, but has forgotten the keys. */
void Shortcuts::handleEnd(bool portalHasLeft)
{
    if (!std::exchange(isBound_, false)) {
        return; // what waits for the portal hears of it itself
    }
    portal_.reset();
    if (portalHasLeft) {
        restore();
    }
}

} // namespace glimmerpane
