// SPDX-License-Identifier: MIT
#include "platform/wlroots/ScreencopyLoop.h"

#include "platform/Log.h"

#include <algorithm>
#include <utility>

namespace glimmerpane::wlroots
{

namespace
{

// Outputs change in several steps, and in between there may be none, or none that can be copied.
constexpr std::chrono::seconds longestAbsence(1);

constexpr QRect everything(QPoint(0, 0), QPoint(0x7fff, 0x7fff)); // of any picture

Error areaGone()
{
    return {.text = Error::tr("The area is not on any display. Move it onto one."),
            .log = QStringLiteral("no output is under the area")};
}

Error connectionLost()
{
    return {.text = Error::tr("The connection to the Wayland compositor was lost."),
            .log = QStringLiteral("Wayland: %1").arg(qt_error_string(errno))};
}

Error nothingCopied()
{
    return {.text = Error::tr("The Wayland compositor no longer delivers pictures of the screen."),
            .log = QStringLiteral("every screencopy frame failed")};
}

} // namespace

std::expected<std::unique_ptr<ScreencopyLoop>, Error> ScreencopyLoop::create(
    const CaptureSource &source, std::shared_ptr<CommandPipe> commands,
    CaptureStream::Handlers handlers)
{
    auto session = ScreencopySession::open();
    if (!session) {
        return std::unexpected(session.error());
    }
    std::unique_ptr<ScreencopyLoop> loop(
        new ScreencopyLoop(std::move(*session), source, std::move(commands), std::move(handlers)));
    loop->followOutputs();
    if (loop->parts_.empty()) {
        return std::unexpected(areaGone());
    }
    loop->session_.wayland->onOutputsChanged = [self = loop.get()] { self->followOutputs(); };
    return loop;
}

ScreencopyLoop::ScreencopyLoop(ScreencopySession session, const CaptureSource &source,
                               std::shared_ptr<CommandPipe> commands,
                               CaptureStream::Handlers handlers)
    : session_(std::move(session))
    , source_(source)
    , commands_(std::move(commands))
    , handlers_(std::move(handlers))
    , pacer_(source_.minimumFrameInterval)
{
    if (const Output *main = mainOutput()) {
        mainName_ = main->state.name;
    }
}

/** The one that counts as the main display; null if there is none. */
const Output *ScreencopyLoop::mainOutput() const
{
    const auto outputs = session_.wayland->outputs();
    const auto isMain = [this](const Output *output) {
        return mainName_.isEmpty() ? output->state.logical == source_.display.pixels
                                   : output->state.name == mainName_;
    };
    const auto found = std::ranges::find_if(outputs, isMain);
    if (found != outputs.end()) {
        return *found;
    }
    return outputs.empty() ? nullptr : outputs.front();
}

QRect ScreencopyLoop::findArea() const
{
    const Output *const main = mainOutput();
    return main == nullptr
        ? QRect()
        : MainDisplay{.pixels = main->state.logical, .scale = source_.display.scale}.areaPixels(
              source_.area);
}

std::vector<OutputCapture::Source> ScreencopyLoop::findParts() const
{
    std::vector<OutputCapture::Source> parts;
    for (const Output *output : session_.wayland->outputs()) {
        const QRect logical = output->state.logical;
        if (const QRect common = logical & area_; !common.isEmpty()) {
            parts.push_back({.output = output->global,
                             .state = output->state,
                             .part = common.translated(-logical.topLeft())});
        }
    }
    return parts;
}

/** Keeps what has not changed: other outputs come and go as well. */
void ScreencopyLoop::followOutputs()
{
    area_ = findArea();
    const auto wanted = findParts();
    const bool isSame = std::ranges::equal(wanted, parts_, {}, {},
                                           [](const auto &part) { return part->source(); });
    if (!isSame) {
        parts_.clear();
        for (const Output *output : session_.wayland->outputs()) {
            const auto source
                = std::ranges::find(wanted, output->global, &OutputCapture::Source::output);
            if (source != wanted.end()) {
                parts_.push_back(std::make_unique<OutputCapture>(
                    session_, *output, source->part, source_.showsPointer,
                    source_.minimumFrameInterval, commands_));
                if (movedAt_) {
                    parts_.back()->force();
                }
            }
        }
        changed_ = everything;
        qCInfo(platformLog) << "the area is now at" << area_ << "on" << parts_.size() << "outputs";
    }
    if (!parts_.empty()) {
        giveUpAt_.reset();
    } else if (!giveUpAt_) {
        giveUpAt_ = std::chrono::steady_clock::now() + longestAbsence;
    }
}

void ScreencopyLoop::run()
{
    while (true) {
        readCommands();
        const auto now = std::chrono::steady_clock::now();
        moveArea(now);
        endIfHopeless(now);
        if (!isRunning_) {
            return;
        }
        for (const auto &part : parts_) {
            part->request(now);
        }
        collectChanges();
        showChanges(now);
        const auto due = nextDue();
        const auto limit = due ? std::optional(std::max(*due - std::chrono::steady_clock::now(),
                                                        std::chrono::nanoseconds::zero()))
                               : std::nullopt;
        if (!session_.wayland->wait(commands_->fileDescriptor(), limit)) {
            end(connectionLost());
        }
    }
}

void ScreencopyLoop::readCommands()
{
    while (const auto command = commands_->receive()) {
        obey(*command);
    }
}

void ScreencopyLoop::obey(const Command &command)
{
    switch (command.kind) {
    case Command::Kind::Stop:
        isRunning_ = false;
        break;
    case Command::Kind::Show:
        repeated_ |= command.rectangle;
        break;
    case Command::Kind::Resend:
        changed_ |= command.rectangle;
        break;
    case Command::Kind::Move:
        wanted_ = command.area;
        break;
    case Command::Kind::BufferFree: // request() looks for it
        break;
    }
}

/** Waits for the previous area's first frame: otherwise, a steady move would show none. */
void ScreencopyLoop::moveArea(TimePoint now)
{
    if (wanted_ && (!movedAt_ || now - *movedAt_ > longestAbsence)) {
        source_.area = *std::exchange(wanted_, std::nullopt);
        movedAt_ = now;
        followOutputs();
    }
}

/** After a move, nothing is shown of an area before all of it has come, unless some of it never
 * does. */
bool ScreencopyLoop::isPictureComplete() const
{
    const auto hasPicture = [](const auto &part) { return part->hasPicture(); };
    const bool isAwaited
        = movedAt_ && std::chrono::steady_clock::now() - *movedAt_ < longestAbsence;
    return isAwaited ? std::ranges::all_of(parts_, hasPicture)
                     : std::ranges::any_of(parts_, hasPicture);
}

void ScreencopyLoop::endIfHopeless(TimePoint now)
{
    const bool isFailing = std::ranges::any_of(parts_, [now](const auto &part) {
        const auto since = part->failingSince();
        return since && now - *since > longestAbsence;
    });
    if (isFailing) {
        end(nothingCopied());
    } else if (giveUpAt_ && now >= *giveUpAt_) {
        end(areaGone());
    }
}

void ScreencopyLoop::end(Error error)
{
    if (std::exchange(isRunning_, false)) {
        qCInfo(platformLog, "capture ended by itself: %s", qPrintable(error.log));
        handlers_.didStopWithError(std::move(error));
    }
}

/** Whether the picture can be handed on as the compositor wrote it. */
bool ScreencopyLoop::isDirect() const
{
    return parts_.size() == 1 && parts_.front()->source().place() == area_
        && parts_.front()->hasPicture() && parts_.front()->isPlain();
}

void ScreencopyLoop::collectChanges()
{
    const bool direct = isDirect();
    for (const auto &part : parts_) {
        if (part->hasPicture()) {
            const QRegion changes = part->takeChanges();
            changed_ |= direct ? changes : composedRegion(*part, changes, area_);
        }
    }
}

/** When the next frame may be made; null if there is nothing to show. */
std::optional<ScreencopyLoop::TimePoint> ScreencopyLoop::showingDue() const
{
    if (!isPictureComplete() || (changed_.isEmpty() && repeated_.isEmpty())) {
        return std::nullopt;
    }
    return pacer_.due() - source_.minimumFrameInterval / 2;
}

void ScreencopyLoop::showChanges(TimePoint now)
{
    if (const auto due = showingDue(); !due || now < *due) {
        return;
    }
    pacer_.advance(now, TimePoint::max());
    movedAt_.reset();
    const bool direct = isDirect();
    const QRect whole(QPoint(), direct ? parts_.front()->size() : area_.size());
    const QRegion changed = std::exchange(changed_, QRegion()) & whole;
    SampleBuffer sample{.picture = SamePicture(),
                        .source = whole,
                        .changed = (changed | std::exchange(repeated_, QRegion())) & whole,
                        .pointer = std::nullopt,
                        .time = now};
    if (!changed.isEmpty()) {
        sample.picture = direct ? parts_.front()->pixels() : composer_.compose(area_, parts_);
    }
    qCDebug(platformLog) << "frame of" << sample.changed;
    handlers_.didOutputSampleBuffer(std::move(sample));
}

/** When there is something to do even if nothing happens. */
std::optional<ScreencopyLoop::TimePoint> ScreencopyLoop::nextDue() const
{
    std::optional<TimePoint> next = giveUpAt_;
    const auto consider = [&next](std::optional<TimePoint> due) {
        if (due) {
            next = std::min(next.value_or(*due), *due);
        }
    };
    if (movedAt_ && !isPictureComplete()) {
        consider(*movedAt_ + longestAbsence);
    }
    for (const auto &part : parts_) {
        consider(part->due());
    }
    consider(showingDue());
    return next;
}

} // namespace glimmerpane::wlroots
