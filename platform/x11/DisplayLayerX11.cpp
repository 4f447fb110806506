// SPDX-License-Identifier: MIT
#include "platform/x11/DisplayLayerX11.h"

#include "platform/Geometry.h"
#include "platform/x11/Events.h"

#include <xcb/xcbext.h>

#include <algorithm>
#include <array>
#include <utility>

namespace glimmerpane::x11
{

namespace
{

// As many pointer images as the capture thread keeps.
constexpr std::size_t mostSprites = 128;

// Frames that follow each other within this time count as a moving picture.
constexpr std::chrono::milliseconds flowInterval(25);

// Beyond this, one large copy is cheaper than a request for each part.
constexpr int mostParts = 16;

QRect rectangleOf(const Highlight &highlight)
{
    return {highlight.topLeft, highlight.image.size()};
}

QRegion regionOf(const std::vector<Highlight> &highlights)
{
    QRegion region;
    for (const Highlight &highlight : highlights) {
        region |= rectangleOf(highlight);
    }
    return region;
}

} // namespace

std::expected<std::unique_ptr<DisplayLayer>, Error> DisplayLayerX11::create(std::uint32_t window,
                                                                            QSize size,
                                                                            Lending most,
                                                                            Drawn drawn)
{
    auto opened = openExtended();
    if (!opened) {
        return std::unexpected(opened.error());
    }
    const auto formats = renderFormats(opened->connection);
    if (!formats) {
        return std::unexpected(formats.error());
    }
    const Lending lending = std::min(most, lendingOf(opened->connection));
    return std::unique_ptr<DisplayLayer>(new DisplayLayerX11(
        std::move(opened->connection), *formats, window, size, lending, std::move(drawn)));
}

DisplayLayerX11::DisplayLayerX11(Connection connection, RenderFormats formats, std::uint32_t window,
                                 QSize size, Lending lending, Drawn drawn)
    : connection_(std::move(connection))
    , formats_(formats)
    , window_(window)
    , bounds_(QPoint(), size)
    , drawn_(std::move(drawn))
    , graphics_(makeGraphicsContext(connection_, connection_.root(),
                                    XCB_SUBWINDOW_MODE_INCLUDE_INFERIORS))
    , picture_(connection_, graphics_.get(), lending,
               [this] { return !isPassed(highlightFence_); }) // which were drawn over it
{
}

bool DisplayLayerX11::isPassed(Fence &fence)
{
    if (fence) {
        void *reply = nullptr;
        xcb_generic_error_t *error = nullptr;
        if (xcb_poll_for_reply(connection_.get(), fence->sequence, &reply, &error) == 0) {
            return false;
        }
        std::free(reply);
        std::free(error);
        fence.reset();
    }
    while (const Reply<xcb_generic_event_t> event{xcb_poll_for_queued_event(connection_.get())}) {
        noteError(*event);
    }
    return true;
}

/** Errors about a destroyed window do not matter, but the server may refuse memory. */
void DisplayLayerX11::noteError(const xcb_generic_event_t &event)
{
    const auto *const extension = xcb_get_extension_data(connection_.get(), &xcb_shm_id);
    if (typeOf(event) == errorType && extension != nullptr
        && eventAs<xcb_generic_error_t>(event).major_code == extension->major_opcode) {
        picture_.refused();
        isStale_ = true;
    }
}

/** The cheapest request with a reply; the reply means that all earlier requests are done. */
DisplayLayerX11::Fence DisplayLayerX11::setFence() const
{
    const auto fence = xcb_get_input_focus(connection_.get());
    connection_.flush();
    return fence;
}

bool DisplayLayerX11::isReadyForMoreMediaData()
{
    if (!isPassed(frameFence_)) {
        return false;
    }
    picture_.giveBack();
    return !connection_.isBroken();
}

bool DisplayLayerX11::isScaled() const
{
    return frame_.source.size() != bounds_.size();
}

void DisplayLayerX11::enqueueSampleBuffer(const SampleBuffer &sample)
{
    const bool isMoved = std::exchange(isStale_, false) || sample.source != frame_.source;
    const auto before = picture_.drawable();
    const bool isShowable = picture_.adopt(sample, sample.source.size() != bounds_.size());
    if (picture_.drawable() != before) {
        screen_ = {};
    }
    if (!isShowable) {
        return;
    }
    const bool wasScaled = isScaled();
    frame_ = sample;
    frame_.picture = SamePicture(); // gives the buffer back, unless it is lent
    lastFrame_ = std::chrono::steady_clock::now();
    const QRegion highlighted = adoptHighlights();
    if (isScaled()) {
        showScaled();
    } else if (isMoved) {
        if (wasScaled) {
            sprites_.clear(); // they were scaled, too
        }
        showElsewhere();
    } else {
        show((sample.changed | adoptPointer() | highlighted) & sample.source);
    }
    frameFence_ = setFence();
    drawn_(!sample.changed.isEmpty());
}

void DisplayLayerX11::showPlain(const QColor &color, const QImage &image)
{
    prepareCanvas(bounds_.size());
    const xcb_rectangle_t whole{0, 0, extent(bounds_.width()), extent(bounds_.height())};
    xcb_render_fill_rectangles(connection_.get(), XCB_RENDER_PICT_OP_SRC, canvas_.picture.get(),
                               renderColor(color, 1), 1, &whole);
    const QSize margins = (bounds_.size() - image.size()) / 2;
    composite(connection_, XCB_RENDER_PICT_OP_OVER,
              uploadImage(connection_, formats_, image).picture, image.rect(), canvas_.picture,
              {margins.width(), margins.height()});
    copyArea(connection_, graphics_.get(), canvas_.pixmap.get(), bounds_, window_, {});
    frame_ = {};
    fitted_ = {};
    frameFence_ = setFence();
    drawn_(false);
}

void DisplayLayerX11::finish()
{
    const Reply<xcb_get_input_focus_reply_t> done(xcb_get_input_focus_reply(
        connection_.get(), xcb_get_input_focus(connection_.get()), nullptr));
    picture_.forgetWithdrawn();
    connection_.flush();
}

bool DisplayLayerX11::setHighlights(const std::vector<Highlight> &highlights)
{
    if (!isPassed(highlightFence_)) {
        return false;
    }
    highlights_ = highlights;
    if (frame_.source.isEmpty()) {
        return true;
    }
    if (highlights.empty() && highlighted_.isEmpty()) {
        isHighlightDue_ = false;
        return true;
    }
    // While frames arrive, each also shows the highlights, so there is no need to draw twice.
    const auto age = std::chrono::steady_clock::now() - lastFrame_;
    if (age < flowInterval && !std::exchange(isHighlightDue_, true)) {
        return false;
    }
    const QRegion stale = adoptHighlights();
    if (isScaled()) {
        showScaled();
    } else {
        show(stale & frame_.source);
    }
    highlightFence_ = setFence();
    drawn_(false);
    return true;
}

/**
 * Notes that the highlights are being drawn as they are now. Returns the region that this changes.
 */
QRegion DisplayLayerX11::adoptHighlights()
{
    isHighlightDue_ = false;
    const QRegion now = regionOf(highlights_);
    return now | std::exchange(highlighted_, now);
}

/**
 * Notes that the latest frame's pointer is shown from now on. Returns the region that this changes.
 */
QRegion DisplayLayerX11::adoptPointer()
{
    const auto before = std::exchange(shownPointer_, std::nullopt);
    if (const auto &pointer = frame_.pointer) {
        shownPointer_ = {.serial = pointer->serial,
                         .topLeft = pointer->topLeft,
                         .covered = QRect(pointer->topLeft, pointer->image.size()) & frame_.source};
    }
    QRegion changed;
    if (before != shownPointer_) {
        changed |= before ? before->covered : QRect();
        changed |= shownPointer_ ? shownPointer_->covered : QRect();
    }
    return changed;
}

std::vector<QRect> DisplayLayerX11::overlays() const
{
    std::vector<QRect> rectangles;
    if (shownPointer_) {
        rectangles.push_back(shownPointer_->covered);
    }
    for (const Highlight &highlight : highlights_) {
        rectangles.push_back(rectangleOf(highlight) & frame_.source);
    }
    return rectangles;
}

/** Replaces the whole picture in one step, so that no viewer sees parts of two areas. */
void DisplayLayerX11::showElsewhere()
{
    fitted_ = bounds_;
    adoptPointer();
    if (overlays().empty()) {
        show(frame_.source);
    } else {
        showPatch(frame_.source);
    }
}

void DisplayLayerX11::show(const QRegion &stale)
{
    QRegion patch;
    for (const QRect &overlay : overlays()) {
        if (stale.intersects(overlay)) {
            patch |= overlay;
        }
    }
    if (patch.rectCount() > mostParts) {
        patch = patch.boundingRect();
    }
    // What lies over the picture is drawn first: a client that reads before the rest follows may
    // see the pointer twice, but never misses it.
    if (!patch.isEmpty()) {
        showPatch(patch);
    }
    for (const QRect &rectangle : stale - patch) {
        picture_.copyTo(rectangle, window_, rectangle.topLeft() - frame_.source.topLeft());
    }
}

/** Assembles the picture and everything over it, then shows each part in one step. */
void DisplayLayerX11::showPatch(const QRegion &patch)
{
    const QRect bounds = patch.boundingRect();
    blackenCanvas(bounds.size()); // copying from beyond the screen would leave old pixels in it
    for (const QRect &part : patch) {
        picture_.copyTo(part, canvas_.pixmap.get(), part.topLeft() - bounds.topLeft());
    }
    if (const auto &pointer = frame_.pointer) {
        composite(connection_, XCB_RENDER_PICT_OP_OVER, sprite(pointer->image),
                  {QPoint(), pointer->image.size()}, canvas_.picture,
                  pointer->topLeft - bounds.topLeft());
    }
    for (const Highlight &highlight : highlights_) {
        if (patch.intersects(rectangleOf(highlight))) {
            compositeFaded(connection_, sprite(highlight.image), {QPoint(), highlight.image.size()},
                           highlight.opacity, canvas_.picture,
                           highlight.topLeft - bounds.topLeft());
        }
    }
    for (const QRect &part : patch) {
        copyArea(connection_, graphics_.get(), canvas_.pixmap.get(),
                 part.translated(-bounds.topLeft()), window_,
                 part.topLeft() - frame_.source.topLeft());
    }
}

void DisplayLayerX11::showScaled()
{
    auto *const connection = connection_.get();
    const QRect source = frame_.source;
    const QRect fitted = aspectFit(source.size(), bounds_);
    const QRect target(QPoint(), fitted.size());
    // A new fit replaces the whole window in one step: what the old one covered becomes black.
    const bool isNewFit = std::exchange(fitted_, fitted) != fitted;
    const QRect shown = isNewFit ? bounds_ : fitted;
    const QPoint place = fitted.topLeft() - shown.topLeft();
    if (screen_.get() == 0) {
        const auto id = connection_.newId();
        const std::uint32_t inferiors = XCB_SUBWINDOW_MODE_INCLUDE_INFERIORS;
        xcb_render_create_picture(connection, id, picture_.drawable(), formats_.screen,
                                  XCB_RENDER_CP_SUBWINDOW_MODE, &inferiors);
        screen_ = Picture(connection_, id);
        setBilinear(connection_, screen_);
    }
    const auto scale = [&](const Picture &picture, QPoint origin) {
        xcb_render_set_picture_transform(connection, picture.get(),
                                         transform(double(source.width()) / fitted.width(),
                                                   double(source.height()) / fitted.height(),
                                                   source.topLeft() - origin));
    };
    if (isNewFit) {
        blackenCanvas(shown.size());
    } else {
        prepareCanvas(shown.size());
    }
    scale(screen_, {});
    composite(connection_, XCB_RENDER_PICT_OP_SRC, screen_, target, canvas_.picture, place);
    if (const auto &pointer = frame_.pointer) {
        const Picture &image = sprite(pointer->image);
        scale(image, pointer->topLeft);
        composite(connection_, XCB_RENDER_PICT_OP_OVER, image, target, canvas_.picture, place);
    }
    for (const Highlight &highlight : highlights_) {
        const Picture &image = sprite(highlight.image);
        scale(image, highlight.topLeft);
        compositeFaded(connection_, image, target, highlight.opacity, canvas_.picture, place);
    }
    copyArea(connection_, graphics_.get(), canvas_.pixmap.get(), {QPoint(), shown.size()}, window_,
             shown.topLeft());
}

void DisplayLayerX11::prepareCanvas(QSize size)
{
    if (size.width() > canvas_.size.width() || size.height() > canvas_.size.height()) {
        canvas_ = makeCanvas(connection_, canvas_.size.expandedTo(size),
                             connection_.screen().root_depth, formats_.screen);
    }
}

void DisplayLayerX11::blackenCanvas(QSize size)
{
    prepareCanvas(size);
    const xcb_rectangle_t whole{0, 0, extent(size.width()), extent(size.height())};
    xcb_poly_fill_rectangle(connection_.get(), canvas_.pixmap.get(), graphics_.get(), 1, &whole);
}

const Picture &DisplayLayerX11::sprite(const QImage &image)
{
    const auto known = std::ranges::find(sprites_, image.cacheKey(), &Sprite::key);
    if (known != sprites_.end()) {
        return known->canvas.picture;
    }
    if (sprites_.size() == mostSprites) {
        sprites_.pop_front();
    }
    sprites_.push_back(
        {.key = image.cacheKey(), .canvas = uploadImage(connection_, formats_, image)});
    return sprites_.back().canvas.picture;
}

} // namespace glimmerpane::x11
