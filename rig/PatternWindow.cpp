// SPDX-License-Identifier: MIT
#include "rig/PatternWindow.h"

#include "rig/FrameNumber.h"
#include "rig/XWindows.h"

#include <algorithm>

namespace glimmerpane::testing
{

namespace
{

constexpr int phases = 8; ///< pictures before they repeat

/** Coloured bands; every pixel differs from that of the next phase. */
void draw(QImage &picture, uint32_t phase)
{
    const uint32_t shift = phase * (256 / phases);
    for (int row = 0; row < picture.height(); ++row) {
        auto *line = reinterpret_cast<QRgb *>(picture.scanLine(row));
        const auto y = static_cast<uint32_t>(row);
        for (uint32_t x = 0; x < static_cast<uint32_t>(picture.width()); ++x) {
            const uint32_t red = (x / 2 + shift) & 0xff;
            const uint32_t green = (y / 2 + shift) & 0xff;
            const uint32_t blue = ((x + y) / 4 + shift) & 0xff;
            line[x] = 0xff000000U | red << 16 | green << 8 | blue;
        }
    }
}

/** Back and forth between 0 and the limit, a few pixels a frame. */
int bounce(uint32_t number, int step, int limit)
{
    const int position = static_cast<int>(number % 100000U) * step % std::max(1, 2 * limit);
    return std::min(position, 2 * limit - position);
}

} // namespace

PatternWindow::PatternWindow(XClient client, const Options &options)
    : client_(std::move(client))
    , mode_(options.mode)
    , size_(options.rectangle.size())
    , context_(client_.newId())
{
}

Result<PatternWindow> PatternWindow::open(const QString &displayName, const Options &options)
{
    auto client = XClient::connect(displayName);
    if (!client) {
        return failure(client.error());
    }
    PatternWindow window(std::move(*client), options);
    if (const auto created = window.create(options); !created) {
        return failure(created.error());
    }
    window.show(0);
    window.sync();
    return window;
}

Result<void> PatternWindow::create(const Options &options)
{
    const auto *shm = xcb_get_extension_data(client_.connection(), &xcb_shm_id);
    if (!shm || !shm->present) {
        return failure(QStringLiteral("the display has no shared memory"));
    }
    completionEvent_ = static_cast<uint8_t>(shm->first_event + XCB_SHM_COMPLETION);
    // Without a background, mapping the window paints nothing before the first frame.
    const uint32_t values[] = {XCB_BACK_PIXMAP_NONE, options.title.isEmpty() ? 1U : 0U};
    const auto window = createWindow(client_, options.rectangle,
                                     XCB_CW_BACK_PIXMAP | XCB_CW_OVERRIDE_REDIRECT, values);
    if (!window) {
        return failure(window.error());
    }
    window_ = *window;
    const uint32_t noExposures = 0;
    xcb_create_gc(client_.connection(), context_, window_, XCB_GC_GRAPHICS_EXPOSURES, &noExposures);
    setPlaceHints(client_, window_, options.rectangle.topLeft());
    removeFrame(client_, window_);
    setTitle(client_, window_, options.title);
    xcb_map_window(client_.connection(), window_);
    Result<void> done;
    const QSize block = mode_ == PatternMode::FullMotion ? size_
        : mode_ == PatternMode::Cursor                   ? QSize(32, 32)
                                                         : QSize(12, 20);
    for (int phase = 0; phase < phases && done; ++phase) {
        done = addPicture(block.boundedTo(size_));
    }
    return done && mode_ != PatternMode::FullMotion ? addPicture(size_) : done;
}

Result<void> PatternWindow::addPicture(QSize size)
{
    auto picture = SharedPicture::create(client_, size);
    if (!picture) {
        return failure(picture.error());
    }
    if (pictures_.size() < phases) {
        draw(picture->image(), static_cast<uint32_t>(pictures_.size()));
    } else {
        picture->image().fill(0xff2b3a4d);
    }
    pictures_.push_back(std::move(*picture));
    return {};
}

void PatternWindow::countFinished(const Reply<xcb_generic_event_t> &event)
{
    if ((event->response_type & 0x7f) == completionEvent_) {
        --unfinished_;
    }
}

void PatternWindow::put(SharedPicture &picture, const QRect &part, QPoint at)
{
    picture.put(client_, window_, context_, part, at);
    ++unfinished_;
}

bool PatternWindow::isDrawn()
{
    while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(client_.connection())}) {
        countFinished(event);
    }
    return unfinished_ == 0;
}

bool PatternWindow::show(uint32_t number)
{
    constexpr int requestsPerFrame = 3;
    const bool isFull = mode_ == PatternMode::FullMotion;
    if (!isDrawn() && unfinished_ > (isFull ? phases - 2 : requestsPerFrame)) {
        return false;
    }
    if (isFull) {
        auto &picture = pictures_[number % phases];
        frameNumber::draw(picture.image(), number);
        put(picture, picture.image().rect(), {});
    } else {
        showSmall(number);
    }
    client_.flush();
    return true;
}

/** Below the number, which it must not cover. */
QPoint PatternWindow::blockPlace(uint32_t number) const
{
    const QSize block = pictures_.front().size();
    const QSize room = size_ - block;
    const int top = frameNumber::drawnArea(size_).height();
    if (mode_ == PatternMode::Typing) {
        const int column = static_cast<int>(number % 1000U) % (size_.width() / block.width());
        return {column * block.width(), std::min(room.height(), top)};
    }
    return {bounce(number, 4, room.width()), std::min(room.height(), top + bounce(number, 2, 60))};
}

void PatternWindow::showSmall(uint32_t number)
{
    auto &still = pictures_.back();
    auto &block = pictures_[number % phases];
    frameNumber::draw(still.image(), number);
    if (number == 0) {
        put(still, still.image().rect(), {});
    } else if (mode_ == PatternMode::Cursor) {
        put(still, QRect(block_, block.size()), block_);
    }
    block_ = blockPlace(number);
    put(block, block.image().rect(), block_);
    put(still, QRect(QPoint(), frameNumber::stripSize), {});
}

void PatternWindow::sync()
{
    client_.sync();
    while (unfinished_ > 0) {
        const Reply<xcb_generic_event_t> event(xcb_wait_for_event(client_.connection()));
        if (!event) {
            return;
        }
        countFinished(event);
    }
}

} // namespace glimmerpane::testing
