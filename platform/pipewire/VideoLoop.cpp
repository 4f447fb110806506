// SPDX-License-Identifier: MIT
#include "platform/pipewire/VideoLoop.h"

#include "platform/Log.h"
#include "platform/pipewire/ChangedRows.h"
#include "platform/pipewire/Metadata.h"

#include <cerrno>
#include <spa/param/video/format-utils.h>

namespace glimmerpane::pipewire
{

namespace
{

using namespace std::chrono_literals;

/** A still screen sends its first picture within 150 ms. */
constexpr auto longestWaitForPicture = 10s;

/** How soon a frame that was not shown comes again: the display server draws one in less. */
constexpr auto showAgainAfter = 4ms;

void setTimer(pw_loop *loop, spa_source *timer, std::chrono::nanoseconds time)
{
    timespec value{};
    value.tv_sec = std::chrono::duration_cast<std::chrono::seconds>(time).count();
    value.tv_nsec = (time % 1s).count();
    pw_loop_update_timer(loop, timer, &value, nullptr, false);
}

Error unreachable()
{
    return {.text = Error::tr("PipeWire cannot be reached. It delivers the picture of the screen."),
            .log = QStringLiteral("PipeWire: %1").arg(qt_error_string(errno)),
            .outcome = Outcome::unavailable};
}

Error unreadable(const QString &log)
{
    return {.text = Error::tr("The desktop delivers the picture of the screen in a form that "
                              "Glimmerpane cannot read."),
            .log = log,
            .outcome = Outcome::unavailable};
}

Error ended(const QString &log)
{
    return {.text = Error::tr("The desktop no longer delivers the picture of the screen."),
            .log = log};
}

} // namespace

/** What PipeWire calls. */
struct Events {
    static VideoLoop &loop(void *data) { return *static_cast<VideoLoop *>(data); }

    static void coreError(void *data, std::uint32_t id, int /*seq*/, int result, const char *text)
    {
        const auto log = QStringLiteral("PipeWire: object %1: %2: %3")
                             .arg(id)
                             .arg(qt_error_string(-result), QString::fromUtf8(text));
        if (id == PW_ID_CORE && result == -EPIPE) {
            loop(data).end({.text = Error::tr("PipeWire has ended. It delivered the picture of the "
                                              "screen."),
                            .log = log,
                            .outcome = Outcome::unavailable});
        } else {
            qCInfo(platformLog, "%s", qPrintable(log));
        }
    }

    static void stateChanged(void *data, pw_stream_state /*old*/, pw_stream_state state,
                             const char *error)
    {
        qCInfo(platformLog, "the stream is %s", pw_stream_state_as_string(state));
        const auto log = QStringLiteral("PipeWire stream: %1").arg(QString::fromUtf8(error));
        if (state == PW_STREAM_STATE_ERROR && loop(data).size_.isEmpty()) {
            loop(data).end(unreadable(log));
        } else if (state == PW_STREAM_STATE_ERROR || state == PW_STREAM_STATE_UNCONNECTED) {
            loop(data).end(ended(log));
        }
    }

    static void paramChanged(void *data, std::uint32_t id, const spa_pod *param)
    {
        if (id == SPA_PARAM_Format && param != nullptr) {
            loop(data).takeFormat(param);
        }
    }

    static void addBuffer(void *data, pw_buffer *buffer) { loop(data).addBuffer(buffer); }
    static void removeBuffer(void *data, pw_buffer *buffer) { loop(data).buffers_.remove(buffer); }
    static void process(void *data) { loop(data).takeBuffers(); }

    static void showAgain(void *data, std::uint64_t /*times*/)
    {
        loop(data).deliver(VideoLoop::Occasion::Again);
    }

    static void giveUp(void *data, std::uint64_t /*times*/)
    {
        if (!loop(data).latest_) {
            loop(data).end(
                {.text = Error::tr("The desktop has not delivered a picture of the screen."),
                 .log
                 = QStringLiteral("no picture within %1 s").arg(longestWaitForPicture.count())});
        }
    }

    static void readMessages(void *data, int /*fd*/, std::uint32_t /*mask*/)
    {
        loop(data).readMessages();
    }

    static const pw_core_events &core()
    {
        static const pw_core_events events = [] {
            pw_core_events table{};
            table.version = PW_VERSION_CORE_EVENTS;
            table.error = coreError;
            return table;
        }();
        return events;
    }

    static const pw_stream_events &stream()
    {
        static const pw_stream_events events = [] {
            pw_stream_events table{};
            table.version = PW_VERSION_STREAM_EVENTS;
            table.state_changed = stateChanged;
            table.param_changed = paramChanged;
            table.add_buffer = addBuffer;
            table.remove_buffer = removeBuffer;
            table.process = process;
            return table;
        }();
        return events;
    }
};

VideoLoop::VideoLoop(VideoNode node, std::shared_ptr<const MessagePipe> messages, Handlers handlers)
    : node_(std::move(node))
    , messages_(std::move(messages))
    , handlers_(std::move(handlers))
    , buffers_(messages_)
    , loop_(pw_main_loop_new(nullptr))
{
}

VideoLoop::~VideoLoop()
{
    latest_.reset();
    isRunning_ = false; // what PipeWire says while it is taken apart is no news
}

void VideoLoop::run()
{
    if (auto connected = connect(); !connected) {
        end(connected.error());
    }
    // An error may have come while connecting.
    if (isRunning_) {
        pw_main_loop_run(loop_.get());
    }
}

std::expected<void, Error> VideoLoop::connect()
{
    pw_loop *const loop = pw_main_loop_get_loop(loop_.get());
    pw_loop_add_io(loop, messages_->reader(), SPA_IO_IN, false, Events::readMessages, this);
    again_ = pw_loop_add_timer(loop, Events::showAgain, this);
    patience_ = pw_loop_add_timer(loop, Events::giveUp, this);
    context_.reset(pw_context_new(loop, nullptr, 0));
    if (context_) {
        core_.reset(node_.remote.get() >= 0
                        ? pw_context_connect_fd(context_.get(), node_.remote.release(), nullptr, 0)
                        : pw_context_connect(context_.get(), nullptr, 0));
    }
    if (!core_) {
        return std::unexpected(unreachable());
    }
    pw_core_add_listener(core_.get(), &coreListener_, &Events::core(), this);
    return connectStream();
}

std::expected<void, Error> VideoLoop::connectStream()
{
    // Never take pictures from anywhere else, such as a camera, when this node goes.
    stream_.reset(pw_stream_new(core_.get(), nodeName,
                                pw_properties_new(PW_KEY_MEDIA_TYPE, "Video", PW_KEY_MEDIA_CATEGORY,
                                                  "Capture", PW_KEY_MEDIA_ROLE, "Screen",
                                                  PW_KEY_NODE_DONT_RECONNECT, "true", nullptr)));
    if (!stream_) {
        return std::unexpected(unreachable());
    }
    pw_stream_add_listener(stream_.get(), &streamListener_, &Events::stream(), this);
    ParameterMemory memory;
    auto formats = acceptedFormats(memory);
    if (pw_stream_connect(stream_.get(), PW_DIRECTION_INPUT, node_.id, PW_STREAM_FLAG_AUTOCONNECT,
                          formats.data(), static_cast<std::uint32_t>(formats.size()))
        < 0) {
        return std::unexpected(unreachable());
    }
    setTimer(pw_main_loop_get_loop(loop_.get()), patience_, longestWaitForPicture);
    return {};
}

/** The best first. */
std::vector<const spa_pod *> VideoLoop::acceptedFormats(ParameterMemory &memory) const
{
    std::vector<const spa_pod *> formats;
    if (!node_.modifiers.empty()) {
        formats.push_back(acceptedFormat(memory, node_.minimumFrameInterval, node_.modifiers));
    }
    formats.push_back(acceptedFormat(memory, node_.minimumFrameInterval, {}));
    return formats;
}

void VideoLoop::useMemory()
{
    if (!std::exchange(node_.modifiers, {}).empty()) {
        ParameterMemory memory;
        auto formats = acceptedFormats(memory);
        pw_stream_update_params(stream_.get(), formats.data(),
                                static_cast<std::uint32_t>(formats.size()));
    }
}

void VideoLoop::end(Error error)
{
    if (std::exchange(isRunning_, false)) {
        qCInfo(platformLog, "the stream ends: %s", qPrintable(error.log));
        handlers_.didStopWithError(std::move(error));
        pw_main_loop_quit(loop_.get());
    }
}

void VideoLoop::readMessages()
{
    for (Message message; messages_->receive(message);) {
        switch (message.kind) {
        case Message::Kind::GiveBack:
            if (pw_buffer *const buffer = buffers_.find(message.buffer)) {
                pw_stream_queue_buffer(stream_.get(), buffer);
            }
            break;
        case Message::Kind::Show:
            due_ |= message.rectangle;
            showAgainSoon();
            break;
        case Message::Kind::UseMemory:
            useMemory();
            break;
        case Message::Kind::Move:
            node_.area = message.rectangle;
            if (latest_) {
                source_ = sourceOf(*latest_);
                due_ = latest_->bounds;
                showAgainSoon();
            }
            break;
        case Message::Kind::Stop:
            isRunning_ = false;
            pw_main_loop_quit(loop_.get());
            break;
        }
    }
}

void VideoLoop::showAgainSoon()
{
    if (!std::exchange(isShownAgainSoon_, true)) {
        setTimer(pw_main_loop_get_loop(loop_.get()), again_, showAgainAfter);
    }
}

void VideoLoop::takeFormat(const spa_pod *format)
{
    spa_video_info_raw info{};
    if (spa_format_video_raw_parse(format, &info) < 0) {
        end(unreadable(QStringLiteral("PipeWire agreed on a format that is none")));
        return;
    }
    size_ = QSize(static_cast<int>(info.size.width), static_cast<int>(info.size.height));
    due_ = QRect(QPoint(), size_);
    modifier_ = modifierOf(*format);
    const auto where = modifier_
        ? QStringLiteral("DMA-BUFs of modifier 0x%1").arg(*modifier_, 0, 16)
        : QStringLiteral("memory");
    qCInfo(platformLog, "the stream's pictures are %dx%d, format %d, at most %u/%u a second, in %s",
           size_.width(), size_.height(), static_cast<int>(info.format), info.max_framerate.num,
           info.max_framerate.denom, qPrintable(where));
    ParameterMemory memory;
    auto parameters = bufferParameters(memory, modifier_ ? SPA_DATA_DmaBuf : SPA_DATA_MemFd);
    pw_stream_update_params(stream_.get(), parameters.data(), parameters.size());
}

void VideoLoop::addBuffer(pw_buffer *buffer)
{
    if (!buffers_.add(buffer)) {
        end(unreadable(QStringLiteral("a buffer of type %1 and %2 bytes cannot be mapped")
                           .arg(buffer->buffer->datas[0].type)
                           .arg(buffer->buffer->datas[0].maxsize)));
    }
}

void VideoLoop::takeBuffers()
{
    while (pw_buffer *const buffer = pw_stream_dequeue_buffer(stream_.get())) {
        takeBuffer(buffer);
    }
    deliver(Occasion::News);
}

void VideoLoop::takeBuffer(pw_buffer *buffer)
{
    takePointer(*buffer->buffer);
    if (isWithoutPicture(*buffer->buffer) || !takePicture(*buffer)) {
        pw_stream_queue_buffer(stream_.get(), buffer);
    }
}

/** False if the buffer holds less than a whole picture. */
bool VideoLoop::takePicture(const pw_buffer &buffer)
{
    auto picture = buffers_.picture(buffer, size_, modifier_);
    if (!picture) {
        return false;
    }
    source_ = sourceOf(*picture);
    const QRect whole(QPoint(), size_);
    const QRegion damage = node_.tellsChanges ? damageOf(*buffer.buffer, size_) : whole;
    due_ |= changesOf(*picture, damage.translated(-picture->origin));
    latest_ = std::move(picture);
    return true;
}

QRect VideoLoop::sourceOf(const BufferPicture &picture) const
{
    return node_.partOf(picture.bounds.size(), node_.area).translated(picture.bounds.topLeft());
}

/** What differs from the latest picture, given what the sender says. */
QRegion VideoLoop::changesOf(const BufferPicture &picture, const QRegion &damage) const
{
    if (!latest_ || latest_->bounds != picture.bounds || latest_->origin != picture.origin
        || latest_->pixels.index() != picture.pixels.index()) {
        return picture.bounds;
    }
    const auto *const before = std::get_if<MappedPixels>(&latest_->pixels);
    const auto *const now = std::get_if<MappedPixels>(&picture.pixels);
    if (before == nullptr || now == nullptr) {
        return damage;
    }
    // GNOME names everything each time, also when it has drawn something elsewhere. Finding out
    // costs less than having viewers draw what has not changed.
    const QRect shown = source_ & picture.bounds;
    const bool isAllNamed = (QRegion(shown) - damage).isEmpty();
    const bool isAllDue = (QRegion(shown) - due_).isEmpty();
    return isAllNamed && !isAllDue ? changedRows(*before, *now, shown) : damage;
}

void VideoLoop::takePointer(const spa_buffer &buffer)
{
    const auto news = pointerNews(buffer);
    if (!news) {
        return;
    }
    if (news->image) {
        hotspot_ = news->hotspot;
        if (sprite_.image != *news->image) {
            sprite_.image = *news->image;
            ++sprite_.serial;
        }
    }
    pointerAt_ = news->isShown ? std::optional(news->position) : std::nullopt;
}

std::optional<PointerSprite> VideoLoop::pointerOver(const BufferPicture &picture) const
{
    if (!pointerAt_ || sprite_.image.isNull()) {
        return std::nullopt;
    }
    PointerSprite pointer = sprite_;
    pointer.topLeft = *pointerAt_ - hotspot_ - picture.origin;
    return QRect(pointer.topLeft, pointer.image.size()).intersects(source_) ? std::optional(pointer)
                                                                            : std::nullopt;
}

void VideoLoop::deliver(Occasion occasion)
{
    if (!latest_ || !isRunning_) {
        return;
    }
    const QRegion changed = std::exchange(due_, {}) & latest_->bounds & source_;
    const auto pointer = pointerOver(*latest_);
    const auto shown
        = pointer ? std::optional(std::pair(pointer->serial, pointer->topLeft)) : std::nullopt;
    if (std::exchange(shownPointer_, shown) == shown && changed.isEmpty()
        && occasion == Occasion::News) {
        return; // all of it is beside the area
    }
    if (std::exchange(isShownAgainSoon_, false)) {
        setTimer(pw_main_loop_get_loop(loop_.get()), again_, 0ns); // which disarms it
    }
    SampleBuffer sample{.picture = SamePicture(),
                        .source = source_,
                        .changed = changed,
                        .pointer = pointer,
                        .time = std::chrono::steady_clock::now()};
    if (!changed.isEmpty()) {
        sample.picture = latest_->pixels;
    }
    handlers_.didOutputSampleBuffer(std::move(sample));
}

} // namespace glimmerpane::pipewire
