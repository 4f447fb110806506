// SPDX-License-Identifier: MIT
#include "platform/wlroots/OutputCapture.h"

#include "platform/Log.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace glimmerpane::wlroots
{

namespace
{

// One is shown, one waits to be shown, one is being written.
constexpr std::size_t mostBuffers = 3;

using Clock = std::chrono::steady_clock;

} // namespace

/** The compositor's events about the frame on its way. */
struct OutputCapture::Listeners {
    static OutputCapture &of(void *data) { return *static_cast<OutputCapture *>(data); }

    static constexpr zwlr_screencopy_frame_v1_listener frame{
        .buffer =
            [](void *data, zwlr_screencopy_frame_v1 *, std::uint32_t format, std::uint32_t width,
               std::uint32_t height, std::uint32_t stride) {
                of(data).layout_
                    = {.format = format,
                       .size = {int(width), int(height)},
                       .stride = stride };
            },
        .flags =
            [](void *data, zwlr_screencopy_frame_v1 *, std::uint32_t flags) {
                of(data).isInverted_ = (flags & ZWLR_SCREENCOPY_FRAME_V1_FLAGS_Y_INVERT) != 0;
            },
        .ready = [](void *data, zwlr_screencopy_frame_v1 *, std::uint32_t, std::uint32_t,
                    std::uint32_t) { of(data).finish(); },
        .failed = [](void *data, zwlr_screencopy_frame_v1 *) { of(data).fail(); },
        .damage =
            [](void *data, zwlr_screencopy_frame_v1 *, std::uint32_t x, std::uint32_t y,
               std::uint32_t width, std::uint32_t height) {
                of(data).noteDamage({int(x), int(y), int(width), int(height)});
            },
        .linux_dmabuf
        = [](void *, zwlr_screencopy_frame_v1 *, std::uint32_t, std::uint32_t, std::uint32_t) {},
        .buffer_done = [](void *data, zwlr_screencopy_frame_v1 *) { of(data).copy(); }};
};

OutputCapture::OutputCapture(const ScreencopySession &session, const Output &output, QRect part,
                             bool showsPointer, std::chrono::nanoseconds interval,
                             std::shared_ptr<CommandPipe> commands)
    : session_(session)
    , output_(output.proxy.get())
    , source_{.output = output.global, .state = output.state, .part = part}
    , showsPointer_(showsPointer)
    , interval_(interval)
    , commands_(std::move(commands))
    , pacer_(interval)
{
}

std::optional<FramePacer::TimePoint> OutputCapture::due() const
{
    // A request waits for the output's next refresh, so it has to be there before that.
    return frame_ || isStarved_ ? std::nullopt : std::optional(pacer_.due() - interval_ / 2);
}

void OutputCapture::request(FramePacer::TimePoint now)
{
    isStarved_ = freeBuffer() == nullptr && buffers_.size() == mostBuffers;
    if (const auto start = due(); !start || *start > now) {
        return;
    }
    damage_ = {};
    isInverted_ = false;
    auto *const manager = session_.screencopy.get();
    const QRect part = source_.part;
    const int pointer = showsPointer_ ? 1 : 0;
    // Of turned outputs, wlroots 0.15 copies wrong regions.
    frame_.reset(
        source_.isTurned()
            ? zwlr_screencopy_manager_v1_capture_output(manager, pointer, output_)
            : zwlr_screencopy_manager_v1_capture_output_region(
                  manager, pointer, output_, part.x(), part.y(), part.width(), part.height()));
    zwlr_screencopy_frame_v1_add_listener(frame_.get(), &Listeners::frame, this);
}

SharedBuffer *OutputCapture::freeBuffer()
{
    const auto free = std::ranges::find_if(buffers_, &SharedBuffer::isFree);
    return free == buffers_.end() ? nullptr : &*free;
}

/** The compositor has said what the buffer is to be like. */
void OutputCapture::copy()
{
    SharedBuffer *buffer = freeBuffer();
    if (buffer == nullptr || buffer->layout() != layout_) {
        std::erase_if(buffers_, [&](const SharedBuffer &old) { return &old == buffer; });
        auto made = imageFormat(layout_.format)
            ? SharedBuffer::create(session_.sharedMemory.get(), layout_)
            : std::nullopt;
        if (!made) {
            qCInfo(platformLog, "no buffer of format %#x", layout_.format);
            fail();
            return;
        }
        buffer = &buffers_.emplace_back(std::move(*made));
    }
    target_ = buffer;
    targetMemory_ = buffer->memory();
    if (isForced_) {
        zwlr_screencopy_frame_v1_copy(frame_.get(), buffer->proxy());
    } else {
        zwlr_screencopy_frame_v1_copy_with_damage(frame_.get(), buffer->proxy());
    }
}

/** wlroots describes the damage of the whole output. */
void OutputCapture::noteDamage(QRect outputPixels)
{
    const QRect whole(QPoint(), layout_.size);
    const OutputState &state = source_.state;
    if (source_.isTurned()) {
        damage_ = whole;
        return;
    }
    const double across = double(state.pixels.width()) / state.logical.width();
    const double down = double(state.pixels.height()) / state.logical.height();
    const bool isWhole = across == std::floor(across) && down == std::floor(down);
    const int margin = isWhole ? 0 : 1; // for rounding
    const QPoint origin(static_cast<int>(source_.part.x() * across),
                        static_cast<int>(source_.part.y() * down));
    damage_ |= outputPixels.translated(-origin).adjusted(-margin, -margin, margin, margin) & whole;
}

void OutputCapture::finish()
{
    const QRect whole(QPoint(), layout_.size);
    const bool isOther
        = latest_ == nullptr || latest_->layout() != layout_ || isLatestInverted_ != isInverted_;
    changes_ |= isOther ? QRegion(whole) : damage_;
    latest_ = std::exchange(target_, nullptr);
    latestMemory_ = std::move(targetMemory_);
    isLatestInverted_ = isInverted_;
    frame_.reset();
    isForced_ = false;
    failingSince_.reset();
    pacer_.advance(Clock::now(), FramePacer::TimePoint::max());
}

void OutputCapture::fail()
{
    target_ = nullptr;
    targetMemory_.reset();
    frame_.reset();
    const auto now = Clock::now();
    failingSince_ = failingSince_.value_or(now);
    pacer_.advance(now, FramePacer::TimePoint::max());
}

QImage OutputCapture::image() const
{
    const BufferLayout &layout = latest_->layout();
    const QImage image(reinterpret_cast<const uchar *>(latest_->memory()->get()),
                       layout.size.width(), layout.size.height(),
                       static_cast<qsizetype>(layout.stride),
                       imageFormat(layout.format).value_or(QImage::Format_Invalid));
    return isLatestInverted_ ? image.mirrored() : image;
}

bool OutputCapture::isPlain() const
{
    return !source_.isTurned() && imageFormat(latest_->layout().format) == QImage::Format_RGB32;
}

MappedPixels OutputCapture::pixels() const
{
    const BufferLayout &layout = latest_->layout();
    const std::byte *const first = latest_->memory()->get();
    const auto stride = static_cast<std::ptrdiff_t>(layout.stride);
    const auto giveBack = [memory = latestMemory_, commands = commands_](const void *) mutable {
        memory.reset();
        commands->send({.kind = Command::Kind::BufferFree, .rectangle = {}});
    };
    return MappedPixels{.data
                        = isLatestInverted_ ? first + (layout.size.height() - 1) * stride : first,
                        .stride = isLatestInverted_ ? -stride : stride,
                        .size = layout.size,
                        .owner = std::shared_ptr<const void>(first, giveBack)};
}

} // namespace glimmerpane::wlroots
