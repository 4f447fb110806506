// SPDX-License-Identifier: MIT
#include "app/Commands.h"

#include "app/Log.h"
#include "app/StoredAreas.h"
#include "model/MainViewModel.h"
#include "services/Json.h"
#include "storage/NamedAreas.h"

#include <QCoroFuture>
#include <QPointer>
#include <QtConcurrent>

#include <utility>

namespace glimmerpane
{

Commands::Commands(MainViewModel &model, AreaFrame &frame, Shortcuts &shortcuts,
                   BackendRequest running, bool showsClicks,
                   std::function<void(const QString &)> bringForward,
                   std::function<QFuture<void>(bool)> turnTray)
    : model_(model)
    , frame_(frame)
    , shortcuts_(shortcuts)
    , running_(std::move(running))
    , showsClicks_(showsClicks)
    , bringForward_(std::move(bringForward))
    , turnTray_(std::move(turnTray))
{
    storing_.setMaxThreadCount(1);
}

namespace
{

CommandResult resultOf(const std::expected<void, Error> &result)
{
    return result ? CommandResult{} : CommandResult::failure(result.error().text);
}

nlohmann::ordered_json jsonOf(const CaptureFrame &area)
{
    return {{"x", area.x}, {"y", area.y}, {"width", area.width}, {"height", area.height}};
}

/** Turns an error text from the model, empty on success, into a reply. */
auto resultTo(const Commands::Reply &reply)
{
    return [reply](const QString &error) {
        reply(error.isEmpty() ? CommandResult{} : CommandResult::failure(error));
    };
}

} // namespace

void Commands::obey(const CommandLine &command, const Reply &reply)
{
    qCInfo(appLog) << "command:" << command.arguments;
    const auto options = launchOptions(command.arguments);
    if (!options) {
        reply(CommandResult::failure(options.error(), ExitCode::Misused));
        return;
    }
    if (options->listsOutput.value_or(running_.listsOutput) != running_.listsOutput) {
        reply(CommandResult::failure(tr("Glimmerpane is already running with the other kind of "
                                        "output window. Quit it first.")));
        return;
    }
    if (options->backend.value_or(running_.name) != running_.name) {
        reply(CommandResult::failure(
            tr("Glimmerpane is already running with another back end. Quit it first.")));
        return;
    }
    if (!options->asksForSomething()) {
        bringForward_(command.startupId);
    }
    obey(*options, reply);
}

void Commands::obey(const LaunchOptions &options, const Reply &reply)
{
    if (options.areas.asksForSomething()) {
        obeyAboutAreas(options, reply);
        return;
    }
    if (options.shortcuts) {
        obeyAboutShortcuts(options, reply);
        return;
    }
    Reply done = [this, reply, tells = options.status](const CommandResult &result) {
        reply(tells && result.exitCode == ExitCode::Succeeded ? status() : result);
    };
    if (options.area) {
        const auto &[x, y, width, height] = *options.area;
        model_.updateFrame(x, y, width, height);
        done = afterwards(model_.areaWritten(), done);
    }
    if (options.frame) {
        const auto turned = frame_.turn(*options.frame);
        if (!turned) {
            reply(CommandResult::failure(turned.error().text));
            return;
        }
        done = afterwards(*turned, done);
    }
    if (options.tray) {
        done = afterwards(turnTray_(*options.tray), done);
    }
    if ((options.share || options.select) && model_.isAlertShown()) {
        reply(CommandResult::failure(tr("Glimmerpane is showing a message. Answer it first.")));
    } else if (options.share) {
        share(done);
    } else if (options.stop) {
        model_.endSharing();
        done({});
    } else if (options.select) {
        select(done);
    } else if (options.move) {
        move(*options.move, options.save, done);
    } else if (options.order) {
        obey(*options.order, done);
    } else {
        done({});
    }
}

/** Sets the area, changes its size, then sees to the stored ones, then to all the rest. */
QCoro::Task<> Commands::obeyAboutAreas(LaunchOptions options, Reply reply)
{
    const QPointer self(this);
    const AreaOptions wanted = std::exchange(options.areas, {});
    if (wanted.use) {
        auto finding = QtConcurrent::run(
            &storing_, [name = *wanted.use] { return NamedAreas(namedAreasFile()).find(name); });
        const auto area = co_await finding;
        if (!self) {
            co_return;
        }
        if (!area) {
            reply(CommandResult::failure(area.error().text));
            co_return;
        }
        model_.useArea(*area);
    }
    if (const auto area = std::exchange(options.area, {})) {
        model_.updateFrame((*area)[0], (*area)[1], (*area)[2], (*area)[3]);
    }
    if (wanted.size) {
        if (const auto done = model_.setAreaSize(*wanted.size); !done) {
            reply(CommandResult::failure(done.error().text));
            co_return;
        }
    }
    const CaptureFrame current = model_.currentFrame();
    co_await model_.areaWritten();
    if (!self) {
        co_return;
    }
    // Not within co_await: GCC 12 destroys a lambda's captures there twice.
    auto storing
        = QtConcurrent::run(&storing_, [wanted, current] { return obeyStored(wanted, current); });
    const CommandResult stored = co_await storing;
    if (!self) {
        co_return;
    }
    if (stored.exitCode != ExitCode::Succeeded) {
        reply(stored);
        co_return;
    }
    obey(options, [reply, stored](const CommandResult &rest) {
        reply(rest.exitCode == ExitCode::Succeeded && rest.output.isEmpty() ? stored : rest);
    });
}

/** Turns them on or off, then sees to all the rest. */
QCoro::Task<> Commands::obeyAboutShortcuts(LaunchOptions options, Reply reply)
{
    const QPointer self(this);
    const bool on = *std::exchange(options.shortcuts, std::nullopt);
    const auto turned = co_await shortcuts_.turn(on);
    if (!self) {
        co_return;
    }
    if (turned) {
        obey(options, reply);
    } else {
        reply(CommandResult::failure(turned.error().text));
    }
}

QFuture<QStringList> Commands::areaNames()
{
    return QtConcurrent::run(&storing_, [] {
        QStringList names;
        for (const NamedArea &area :
             NamedAreas(namedAreasFile()).list().value_or(NamedAreaList()).areas) {
            names.append(area.name);
        }
        return names;
    });
}

Commands::Reply Commands::afterwards(const QFuture<void> &written, const Reply &reply)
{
    return [this, reply, written](const CommandResult &result) {
        QFuture(written).then(this, [reply, result] { reply(result); });
    };
}

void Commands::share(const Reply &reply)
{
    if (model_.isFrameSelectorOpen()) {
        reply(CommandResult::failure(
            tr("The area is being selected. Confirm or cancel the selection first.")));
    } else if (model_.isSharingWindowOpen()) {
        reply({});
    } else {
        connect(&model_, &MainViewModel::startEnded, this, resultTo(reply),
                Qt::SingleShotConnection);
        model_.startSharing();
    }
}

void Commands::select(const Reply &reply)
{
    if (model_.isSharingWindowOpen() || model_.isCheckingPermission()) {
        reply(CommandResult::failure(
            tr("The area cannot be selected while it is being shared. Stop sharing first.")));
    } else if (model_.isFrameSelectorOpen()) {
        reply({});
    } else {
        connect(&model_, &MainViewModel::frameSelectorShown, this, resultTo(reply),
                Qt::SingleShotConnection);
        model_.openFrameSelector();
    }
}

QCoro::Task<> Commands::move(AreaMove move, bool saves, Reply reply)
{
    const QPointer self(this);
    const CaptureFrame shared = model_.sharedFrame().value_or(CaptureFrame());
    const CaptureFrame frame{.x = move.x,
                             .y = move.y,
                             .width = move.width.value_or(shared.width),
                             .height = move.height.value_or(shared.height)};
    const auto moved = co_await frame_.move(frame, saves);
    if (!self) {
        co_return;
    }
    if (moved && saves) {
        co_await model_.areaWritten();
    }
    reply(resultOf(moved));
}

QCoro::Task<> Commands::obey(SessionOrder order, Reply reply)
{
    const bool resumes = order == SessionOrder::Resume
        || (order == SessionOrder::TogglePause && model_.isPaused());
    if (!resumes) {
        reply(resultOf(model_.pauseSharing(order == SessionOrder::Blank ? PausePicture::Plain
                                                                        : PausePicture::Latest)));
        co_return;
    }
    const QPointer self(this);
    const auto resumed = co_await model_.resumeSharing();
    if (self) {
        reply(resultOf(resumed));
    }
}

QString Commands::clicks() const
{
    return showsClicks_ ? QStringLiteral("shown") : QStringLiteral("none");
}

CommandResult Commands::status() const
{
    const auto shared = model_.sharedFrame();
    const auto watched = model_.isWatched();
    const CaptureStatistics statistics = model_.captureStatistics();
    const nlohmann::ordered_json object{
        {"area", jsonOf(model_.currentFrame())},
        {"sharing", model_.isSharingWindowOpen()},
        {"sharedArea", shared ? jsonOf(*shared) : nlohmann::ordered_json()},
        {"paused", model_.isPaused()},
        {"watched", watched ? nlohmann::ordered_json(*watched) : nlohmann::ordered_json()},
        {"framesPerSecond", statistics.framesInLastSecond},
        {"drops", statistics.dropped},
        {"backend", running_.name.toStdString()},
        {"clicks", clicks().toStdString()},
    };
    return {.exitCode = ExitCode::Succeeded,
            .output = QString::fromStdString(object.dump()),
            .error = {}};
}

} // namespace glimmerpane
