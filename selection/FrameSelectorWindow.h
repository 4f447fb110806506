// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Backend.h"
#include "selection/BorderView.h"
#include "selection/ButtonContainerView.h"
#include "selection/CursorManager.h"
#include "selection/ResizeHandler.h"
#include "services/Error.h"

#include <expected>
#include <functional>
#include <memory>
#include <optional>

namespace glimmerpane
{

/**
 * The floating window that selects the capture area: its frame is the area. Dragging its inside
 * moves it, dragging its edges resizes it, and its buttons close it. Everything but the window
 * itself uses points and desktop coordinates. Main thread. Owned by a shared pointer because a
 * callback may release it.
 */
class FrameSelectorWindowController
    : public std::enable_shared_from_this<FrameSelectorWindowController>
{
public:
    /** Starts over this area. */
    FrameSelectorWindowController(const Backend &backend, const Rect &frame);
    /** Starts over an area of 600 x 400 points in the middle of the main display. */
    explicit FrameSelectorWindowController(const Backend &backend);
    ~FrameSelectorWindowController();
    Q_DISABLE_COPY_MOVE(FrameSelectorWindowController)

    /** Called with the area on "Confirm", before the window closes. */
    std::function<void(const Rect &)> onConfirm;
    /** Called once when the window closes, for whatever reason. */
    std::function<void()> onWillClose;

    /** An error if the desktop refused the window. */
    const std::expected<void, Error> &opened() const { return opened_; }
    void showWindow();
    /** Closes the window; later calls do nothing. */
    void close();

private:
    FrameSelectorWindowController(const Backend &backend, std::optional<Rect> frame);
    Rect startingFrame(const std::optional<Rect> &wanted) const;
    void lookAtDisplay();
    void handle(const PointerEvent &event);
    bool offerToButtons(const PointerEvent &event);
    void mouseDown(Point pointer);
    void mouseDragged(const PointerEvent &event);
    void dragEnded();
    void showCursor(Point pointer);
    ResizeHandler::ResizeEdge edgeAt(Point pointer) const;
    Rect movedFrame(Point pointer, Point start) const;
    Rect resizedFrame(QPoint desktopPixel, bool keepsRatio) const;
    void present();
    void confirmSelection();
    void cancelSelection();

    const std::shared_ptr<Displays> displays_;
    Rect frame_;
    MainDisplay display_; ///< as of the last check
    bool hasDisplay_ = false;
    std::optional<Point> dragStartLocation_; ///< from the frame's bottom-left corner
    ResizeHandler::ResizeEdge resizeEdge_ = ResizeHandler::ResizeEdge::none;
    Rect initialFrame_; ///< when the button was pressed
    bool isDragged_ = false;
    const ResizeHandler resizeHandler_{};
    const CursorManager cursorManager_{};
    BorderView border_;
    ButtonContainerView buttons_;
    QImage panel_;
    std::expected<void, Error> opened_;
    bool isClosing_ = false;
    std::unique_ptr<OverlayWindow> window_;
};

} // namespace glimmerpane
