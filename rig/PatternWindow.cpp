// SPDX-License-Identifier: MIT
#include "rig/PatternWindow.h"

#include "rig/FrameNumber.h"
#include "rig/PatternPainter.h"
#include "rig/XWindows.h"

#include <algorithm>

namespace glimmerpane::testing
{

namespace
{

/** Back and forth between 0 and the limit, a few pixels a frame. */
int bounce(uint32_t number, int step, int limit)
{
    if (limit <= 0) {
        return 0;
    }
    const int position = static_cast<int>(number % 100000U) * step % (2 * limit);
    return position < limit ? position : 2 * limit - position;
}

} // namespace

PatternWindow::PatternWindow(XClient client, const QRect &rectangle, PatternMode mode)
    : client_(std::move(client))
    , mode_(mode)
    , size_(rectangle.size())
    , context_(client_.newId())
{
}

Result<PatternWindow> PatternWindow::open(const QString &displayName, const QRect &rectangle,
                                          PatternMode mode)
{
    auto client = XClient::connect(displayName);
    if (!client) {
        return failure(client.error());
    }
    PatternWindow window(std::move(*client), rectangle, mode);
    if (const auto created = window.create(rectangle); !created) {
        return failure(created.error());
    }
    window.show(0);
    window.sync();
    return window;
}

Result<void> PatternWindow::create(const QRect &rectangle)
{
    const auto *shm = xcb_get_extension_data(client_.connection(), &xcb_shm_id);
    if (!shm || !shm->present) {
        return failure(QStringLiteral("the display has no shared memory"));
    }
    completionEvent_ = static_cast<uint8_t>(shm->first_event + XCB_SHM_COMPLETION);
    // Without a background, mapping the window paints nothing before the first frame.
    const uint32_t values[] = {XCB_BACK_PIXMAP_NONE, 1};
    const auto window
        = createWindow(client_, rectangle, XCB_CW_BACK_PIXMAP | XCB_CW_OVERRIDE_REDIRECT, values);
    if (!window) {
        return failure(window.error());
    }
    window_ = *window;
    const uint32_t noExposures = 0;
    xcb_create_gc(client_.connection(), context_, window_, XCB_GC_GRAPHICS_EXPOSURES, &noExposures);
    xcb_map_window(client_.connection(), window_);
    if (mode_ == PatternMode::FullMotion) {
        return addPictures(size_, patternPainter::phases);
    }
    auto still = SharedPicture::create(client_, size_);
    if (!still) {
        return failure(still.error());
    }
    patternPainter::drawStill(still->image());
    frameNumber::draw(still->image(), 0);
    still_.push_back(std::move(*still));
    if (mode_ == PatternMode::Still) {
        return {};
    }
    return addPictures(blockSize().boundedTo(size_), patternPainter::phases);
}

Result<void> PatternWindow::addPictures(QSize size, uint32_t count)
{
    for (uint32_t phase = 0; phase < count; ++phase) {
        auto picture = SharedPicture::create(client_, size);
        if (!picture) {
            return failure(picture.error());
        }
        patternPainter::drawBackdrop(picture->image(), phase);
        pictures_.push_back(std::move(*picture));
    }
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
    constexpr int framesAhead = static_cast<int>(patternPainter::phases) - 2;
    const int limit = mode_ == PatternMode::FullMotion ? framesAhead : requestsPerFrame;
    if (!isDrawn() && unfinished_ > limit) {
        return false;
    }
    switch (mode_) {
    case PatternMode::FullMotion:
        showFull(number);
        break;
    case PatternMode::SmallChange:
    case PatternMode::Cursor:
    case PatternMode::Typing:
        showSmall(number);
        break;
    case PatternMode::Still:
        if (number == 0) {
            put(still_.front(), QRect(QPoint(), size_), {});
        }
        break;
    }
    client_.flush();
    return true;
}

void PatternWindow::showFull(uint32_t number)
{
    auto &picture = pictures_[number % pictures_.size()];
    frameNumber::draw(picture.image(), number);
    put(picture, QRect(QPoint(), size_), {});
}

QSize PatternWindow::blockSize() const
{
    switch (mode_) {
    case PatternMode::Cursor:
        return {32, 32};
    case PatternMode::Typing:
        return {12, 20};
    default:
        return {320, 180};
    }
}

/** Below the number, which it must not cover. */
QPoint PatternWindow::blockPlace(uint32_t number, QSize block) const
{
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
    auto &still = still_.front();
    auto &block = pictures_[number % pictures_.size()];
    const QRect numberArea = frameNumber::drawnArea(size_);
    frameNumber::draw(still.image(), number);
    if (number == 0) {
        put(still, QRect(QPoint(), size_), {});
    } else if (mode_ != PatternMode::Typing) {
        put(still, QRect(block_, block.image().size()), block_);
    }
    block_ = blockPlace(number, block.image().size());
    put(block, block.image().rect(), block_);
    const bool withDigits = mode_ == PatternMode::SmallChange;
    put(still, withDigits ? numberArea : QRect(QPoint(), frameNumber::stripSize), {});
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
