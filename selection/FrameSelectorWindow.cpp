// SPDX-License-Identifier: MIT
#include "selection/FrameSelectorWindow.h"

#include "platform/Palette.h"
#include "selection/Log.h"
#include "selection/SizeLabel.h"
#include "services/CallOnce.h"

#include <QGuiApplication>

#include <algorithm>
#include <cmath>
#include <utility>

namespace glimmerpane
{

namespace
{

constexpr double defaultWidth = 600; // points
constexpr double defaultHeight = 400;

Rect defaultFrame(const std::optional<MainDisplay> &display)
{
    const Rect screen = display
        ? display->frame()
        : Rect{.x = 0, .y = 0, .width = defaultWidth, .height = defaultHeight};
    return {.x = screen.midX() - defaultWidth / 2,
            .y = screen.midY() - defaultHeight / 2,
            .width = defaultWidth,
            .height = defaultHeight};
}

/** Enlarged around its centre until the buttons fit between the edge bands. */
Rect enlarged(Rect frame)
{
    constexpr double bands = 2 * ResizeHandler::edgeThreshold;
    const Rect buttons = ButtonContainerView::frameIn({});
    if (const double least = buttons.width + bands; frame.width < least) {
        frame.x = std::round(frame.midX() - least / 2);
        frame.width = least;
    }
    if (const double least = buttons.height + bands; frame.height < least) {
        frame.y = std::round(frame.midY() - least / 2);
        frame.height = least;
    }
    return frame;
}

/** Moved onto the screen. If it is larger than the screen, its bottom-left corner is kept there. */
Rect movedOnto(const Rect &screen, Rect frame)
{
    frame.x = std::max(screen.minX(), std::min(screen.maxX() - frame.width, frame.x));
    frame.y = std::max(screen.minY(), std::min(screen.maxY() - frame.height, frame.y));
    return frame;
}

/**
 * Areas are stored in whole points, so dragging snaps to them, even if a point has several pixels.
 */
Point wholePoint(Point point)
{
    return {.x = std::round(point.x), .y = std::round(point.y)};
}

} // namespace

FrameSelectorWindowController::FrameSelectorWindowController(const Backend &backend,
                                                             const Rect &frame)
    : FrameSelectorWindowController(backend, std::optional(frame))
{
}

FrameSelectorWindowController::FrameSelectorWindowController(const Backend &backend)
    : FrameSelectorWindowController(backend, std::nullopt)
{
}

FrameSelectorWindowController::FrameSelectorWindowController(const Backend &backend,
                                                             std::optional<Rect> frame)
    : displays_(backend.displays)
{
    lookAtDisplay();
    frame_ = startingFrame(frame);
    auto window
        = backend.overlays->make(QStringLiteral("Glimmerpane - Area"), display_.areaPixels(frame_),
                                 BorderView::glass(display_.scale));
    if (!window) {
        qCInfo(selectionLog, "cannot open the selector: %s", qPrintable(window.error().log));
        opened_ = std::unexpected(window.error());
        return;
    }
    qCInfo(selectionLog) << "selector over" << display_.areaPixels(frame_) << "desktop pixels";
    window_ = std::move(*window);
    window_->onPointer = [this](const PointerEvent &event) { handle(event); };
    window_->onLost = [this] { close(); };
    QObject::connect(&buttons_, &ButtonContainerView::confirmed, &buttons_,
                     [this] { confirmSelection(); });
    QObject::connect(&buttons_, &ButtonContainerView::cancelled, &buttons_,
                     [this] { cancelSelection(); });
    QObject::connect(&buttons_, &ButtonContainerView::lookChanged, &buttons_, [this] {
        panel_ = {};
        present();
    });
}

FrameSelectorWindowController::~FrameSelectorWindowController() = default;

/** An area that could not be grabbed is moved to where it is visible. */
Rect FrameSelectorWindowController::startingFrame(const std::optional<Rect> &wanted) const
{
    const auto main = displays_->mainDisplay();
    if (!wanted || !(std::isfinite(wanted->x) && std::isfinite(wanted->y))) {
        return defaultFrame(main);
    }
    const Rect frame{.x = wanted->x,
                     .y = wanted->y,
                     .width = std::abs(wanted->width),
                     .height = std::abs(wanted->height)};
    const QSize size = toPixels(frame.width, frame.height, display_.scale);
    if (size.isEmpty() || std::max(size.width(), size.height()) > displays_->largestWindowSide()) {
        return defaultFrame(main);
    }
    const auto displays = displays_->displays();
    const QRect pixels = display_.areaPixels(frame);
    const auto shown = std::ranges::find_if(
        displays, [&](const Display &display) { return display.pixels.intersects(pixels); });
    if (shown == displays.end()) {
        return main ? movedOnto(main->frame(), enlarged(frame)) : enlarged(frame);
    }
    const Rect usable = enlarged(frame);
    return usable == frame ? frame : movedOnto(display_.areaOf(shown->pixels), usable);
}

/** When displays change, the window stays in place, so its coordinates change. */
void FrameSelectorWindowController::lookAtDisplay()
{
    const auto display = displays_->mainDisplay();
    hasDisplay_ = display.has_value();
    if (display && *display != display_) {
        const QRect pixels = display_.areaPixels(frame_);
        display_ = *display;
        frame_ = display_.areaOf(pixels);
    }
}

void FrameSelectorWindowController::showWindow()
{
    present();
}

void FrameSelectorWindowController::present()
{
    if (!window_ || isClosing_) {
        return;
    }
    const double scale = display_.scale;
    if (panel_.isNull()) {
        panel_ = buttons_.picture(scale);
    }
    const QRect pixels = display_.areaPixels(frame_);
    const QSizeF size(frame_.width, frame_.height);
    border_.layout(size);
    const Rect panel = ButtonContainerView::frameIn(size);
    const QPoint panelOrigin(static_cast<int>(std::lround(panel.x * scale)),
                             pixels.height() - static_cast<int>(std::lround(panel.maxY() * scale)));
    window_->present(pixels,
                     {.marks = border_.marks(pixels.size(), scale),
                      .markColor = systemBlue(QGuiApplication::palette()),
                      .panel = panel_,
                      .panelOrigin = panelOrigin},
                     isDragged_ ? sizeLabel(pixels, display_) : OverlayLabel());
}

void FrameSelectorWindowController::handle(const PointerEvent &event)
{
    const auto self = shared_from_this();
    using Kind = PointerEvent::Kind;
    if (event.kind == Kind::Press) {
        lookAtDisplay();
    } else if (event.kind != Kind::Drag) {
        dragEnded();
    }
    if (offerToButtons(event)) {
        if (!isClosing_) {
            window_->setCursor(Qt::ArrowCursor);
        }
        return;
    }
    switch (event.kind) {
    case Kind::Press:
        mouseDown(display_.pointOf(event.position));
        break;
    case Kind::Drag:
        mouseDragged(event);
        break;
    case Kind::Move:
        showCursor(display_.pointOf(event.position));
        break;
    case Kind::Leave:
        window_->setCursor(Qt::ArrowCursor);
        break;
    case Kind::Release:
        break;
    }
}

bool FrameSelectorWindowController::offerToButtons(const PointerEvent &event)
{
    const Point place = display_.pointOf(event.position) - frame_.origin();
    const Rect panel = ButtonContainerView::frameIn({frame_.width, frame_.height});
    return buttons_.handle(event.kind, {place.x - panel.minX(), panel.maxY() - place.y});
}

ResizeHandler::ResizeEdge FrameSelectorWindowController::edgeAt(Point pointer) const
{
    return resizeHandler_.edgeAt(pointer - frame_.origin(), frame_);
}

void FrameSelectorWindowController::mouseDown(Point pointer)
{
    dragStartLocation_ = wholePoint(pointer) - frame_.origin();
    resizeEdge_ = edgeAt(pointer);
    initialFrame_ = frame_;
}

void FrameSelectorWindowController::mouseDragged(const PointerEvent &event)
{
    if (!hasDisplay_ || !dragStartLocation_) {
        return;
    }
    const bool isMove = resizeEdge_ == ResizeHandler::ResizeEdge::none;
    const Rect frame = isMove ? movedFrame(display_.pointOf(event.position), *dragStartLocation_)
                              : resizedFrame(event.position, event.isShiftDown);
    if (!std::exchange(isDragged_, true) || frame != frame_) {
        frame_ = frame;
        present();
    }
}

void FrameSelectorWindowController::dragEnded()
{
    if (std::exchange(isDragged_, false)) {
        present();
    }
}

Rect FrameSelectorWindowController::movedFrame(Point pointer, Point start) const
{
    const Point origin = wholePoint(pointer) - start;
    return movedOnto(
        display_.frame(),
        {.x = origin.x, .y = origin.y, .width = frame_.width, .height = frame_.height});
}

Rect FrameSelectorWindowController::resizedFrame(QPoint desktopPixel, bool keepsRatio) const
{
    // The pointer cannot move past the last pixel, so there it counts as the display's edge.
    if (desktopPixel.x() == display_.pixels.right()) {
        ++desktopPixel.rx();
    }
    if (desktopPixel.y() == display_.pixels.bottom()) {
        ++desktopPixel.ry();
    }
    const Rect screen = display_.frame();
    const Point pointer = wholePoint(display_.pointOf(desktopPixel));
    const Rect frame = keepsRatio
        ? resizeHandler_.resizedInRatio(resizeEdge_, pointer, initialFrame_, screen)
        : resizeHandler_.resizedFrame(resizeEdge_, pointer, initialFrame_, screen);
    // If the fixed side lies beyond the screen, no size brings the other side onto it.
    const bool isPossible = frame.width >= 1 && frame.height >= 1;
    return isPossible ? frame : movedOnto(screen, initialFrame_);
}

void FrameSelectorWindowController::showCursor(Point pointer)
{
    cursorManager_.setCursor(edgeAt(pointer), *window_);
}

void FrameSelectorWindowController::confirmSelection()
{
    if (!window_) {
        return;
    }
    lookAtDisplay();
    if (const auto confirm = onConfirm) {
        confirm(frame_);
    }
    close();
}

void FrameSelectorWindowController::cancelSelection()
{
    close();
}

void FrameSelectorWindowController::close()
{
    const auto self = shared_from_this();
    if (std::exchange(isClosing_, true)) {
        return;
    }
    if (window_) {
        window_->setCursor(Qt::ArrowCursor);
        window_->hide();
    }
    callOnce(onWillClose);
}

} // namespace glimmerpane
