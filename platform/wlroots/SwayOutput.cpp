// SPDX-License-Identifier: MIT
#include "platform/wlroots/SwayOutput.h"

#include "platform/Log.h"

#include <QDeadlineTimer>

#include <algorithm>
#include <utility>

namespace glimmerpane::wlroots
{

namespace
{

constexpr QPoint faraway(20000, 20000); // X11 positions, which windows there have too, end at 32767

QString quoted(QString name)
{
    return u'"' + name.replace(u'"', QStringLiteral("\\\"")) + u'"';
}

const SwayOutputState *find(const std::vector<SwayOutputState> &outputs, const QString &name)
{
    const auto found = std::ranges::find(outputs, name, &SwayOutputState::name);
    return found == outputs.end() ? nullptr : &*found;
}

/** Sway moves outputs that nobody has placed whenever another one comes. */
std::expected<void, Error> pin(const SwayConnection &sway,
                               const std::vector<SwayOutputState> &outputs)
{
    for (const SwayOutputState &output : outputs) {
        if (!output.isActive) {
            continue;
        }
        const auto pinned = sway.command(QStringLiteral("output %1 position %2 %3")
                                             .arg(quoted(output.name))
                                             .arg(output.place.x())
                                             .arg(output.place.y()));
        if (!pinned) {
            return pinned;
        }
    }
    return {};
}

/** The name of a new output. */
std::expected<QString, Error> make(const SwayConnection &sway,
                                   const std::vector<SwayOutputState> &before)
{
    if (auto made = sway.command(QStringLiteral("create_output")); !made) {
        return std::unexpected(made.error());
    }
    const auto after = sway.outputs();
    if (!after) {
        return std::unexpected(after.error());
    }
    const auto isNew
        = [&](const SwayOutputState &output) { return find(before, output.name) == nullptr; };
    const auto made = std::ranges::find_if(*after, isNew);
    if (made == after->end()) {
        return std::unexpected(Error{.text = Error::tr("Sway has made no output."),
                                     .log = QStringLiteral("create_output made no output")});
    }
    return made->name;
}

/** Below all that are far away already. */
QRect freePlace(QSize size, const std::vector<SwayOutputState> &outputs, const QString &own)
{
    QRect place(faraway, size);
    for (const SwayOutputState &output : outputs) {
        if (output.name != own && output.place.bottom() >= place.top()) {
            place.moveTop(output.place.bottom() + 1);
        }
    }
    return place;
}

} // namespace

void SwayOutput::removeAbandoned()
{
    const QStringList names = OutputRecord::abandoned();
    if (names.isEmpty()) {
        return;
    }
    const auto sway = SwayConnection::open();
    const auto outputs = sway ? sway->outputs() : std::unexpected(sway.error());
    if (!outputs) {
        return;
    }
    for (const QString &name : names) {
        const auto record = OutputRecord::hold(name);
        const bool isThere = find(*outputs, name) != nullptr;
        const bool isGone = !isThere
            || sway->command(QStringLiteral("output %1 unplug").arg(quoted(name))).has_value();
        if (record && isGone) {
            record->erase();
        }
    }
}

std::expected<std::unique_ptr<SwayOutput>, Error> SwayOutput::create(QSize size)
{
    removeAbandoned();
    auto sway = SwayConnection::open();
    const auto outputs = sway ? sway->outputs() : std::unexpected(sway.error());
    if (!outputs) {
        return std::unexpected(outputs.error());
    }
    if (auto pinned = pin(*sway, *outputs); !pinned) {
        return std::unexpected(pinned.error());
    }
    const QStringList spare = OutputRecord::abandoned(); // that could not be removed
    const auto name = spare.isEmpty() ? make(*sway, *outputs) : spare.front();
    if (!name) {
        return std::unexpected(name.error());
    }
    auto record = OutputRecord::hold(*name);
    if (!record) {
        return std::unexpected(
            Error{.text = Error::tr("Cannot write to the folder that XDG_RUNTIME_DIR names."),
                  .log = QStringLiteral("no record of %1").arg(*name)});
    }
    const QRect place = freePlace(size, *outputs, *name);
    std::unique_ptr<SwayOutput> output(
        new SwayOutput(std::move(*sway), *name, std::move(*record), place, *outputs));
    if (auto watching = output->watch(); !watching) {
        return std::unexpected(watching.error());
    }
    if (auto arranged = output->arrange(); !arranged) {
        return std::unexpected(arranged.error());
    }
    qCInfo(platformLog) << "output" << *name << "at" << place;
    return output;
}

SwayOutput::SwayOutput(SwayConnection sway, QString name, OutputRecord record, QRect place,
                       std::vector<SwayOutputState> others)
    : sway_(std::move(sway))
    , name_(std::move(name))
    , record_(std::move(record))
    , place_(place)
    , others_(std::move(others))
{
}

SwayOutput::~SwayOutput()
{
    if (sway_.command(QStringLiteral("output %1 unplug").arg(quoted(name_)))) {
        record_.erase();
    }
}

/** Gives it its size, its place and a workspace that no key leads to. */
std::expected<void, Error> SwayOutput::arrange() const
{
    const auto placed
        = sway_.command(QStringLiteral("output %1 mode --custom %2x%3@60Hz position %4 %5 scale 1 "
                                       "transform normal")
                            .arg(quoted(name_))
                            .arg(place_.width())
                            .arg(place_.height())
                            .arg(place_.x())
                            .arg(place_.y()));
    if (!placed) {
        return placed;
    }
    constexpr std::chrono::seconds limit(2); // sway 1.10 may take a moment
    const QDeadlineTimer deadline(limit);
    while (!isArranged()) {
        if (deadline.hasExpired()) {
            return std::unexpected(
                Error{.text = Error::tr("Sway does not give an output the size of the area."),
                      .log = QStringLiteral("%1 is not at its place").arg(name_)});
        }
    }
    const auto outputs = sway_.outputs();
    const auto *const self = outputs ? find(*outputs, name_) : nullptr;
    const QString workspace = QStringLiteral("Glimmerpane ") + name_;
    if (self != nullptr && self->workspace != workspace) {
        return sway_.command(QStringLiteral("rename workspace %1 to %2")
                                 .arg(quoted(self->workspace), quoted(workspace)));
    }
    return {};
}

bool SwayOutput::isArranged() const
{
    const auto outputs = sway_.outputs();
    const auto *const self = outputs ? find(*outputs, name_) : nullptr;
    return self != nullptr && self->isActive && self->place == place_;
}

std::expected<void, Error> SwayOutput::watch()
{
    auto events = SwayConnection::open();
    if (!events) {
        return std::unexpected(events.error());
    }
    if (auto subscribed = events->subscribeToWorkspaces(); !subscribed) {
        return subscribed;
    }
    events_ = std::move(*events);
    notifier_ = std::make_unique<QSocketNotifier>(events_->fileDescriptor(), QSocketNotifier::Read);
    connect(notifier_.get(), &QSocketNotifier::activated, this, &SwayOutput::readEvent);
    return {};
}

void SwayOutput::readEvent()
{
    const auto event = events_ ? events_->nextEvent() : std::nullopt;
    if (!event) {
        notifier_->setEnabled(false);
    } else if (event->change == u"reload") { // sway has forgotten what is not in its files
        std::ignore = pin(sway_, others_);
        std::ignore = arrange();
    } else if (event->change == u"focus" && event->output == name_ && !event->previous.isEmpty()) {
        // Otherwise whoever goes on to the next output works where nothing can be seen.
        std::ignore = sway_.command(QStringLiteral("workspace --no-auto-back-and-forth ")
                                    + quoted(event->previous));
    }
}

} // namespace glimmerpane::wlroots
