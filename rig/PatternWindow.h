// SPDX-License-Identifier: MIT
#pragma once

#include "rig/SharedPicture.h"

#include <vector>

namespace glimmerpane::testing
{

enum class PatternMode {
    FullMotion, ///< every pixel of the window changes from frame to frame
    Cursor, ///< a still picture with a moving block of 32x32 pixels and the number's strip
    Typing, ///< the same with letters of 12x20 pixels, one after the other
};

/**
 * A window that shows numbered frames through shared memory, on a connection of its own. The
 * pictures are prepared; a frame costs the number and one request, or three if little moves.
 */
class PatternWindow
{
public:
    struct Options {
        QRect rectangle; ///< root pixels
        PatternMode mode = PatternMode::FullMotion;
        QString title{}; ///< of a managed window; without a title, no window manager sees it
    };

    /** On return it is mapped on top of everything else and shows frame 0. */
    static Result<PatternWindow> open(const QString &displayName, const Options &options);

    /**
     * Sends one frame. False, and nothing is shown, if the server is so far behind that no picture
     * is free.
     */
    bool show(uint32_t number);

    /** Whether the server is known to have drawn everything that was sent. */
    bool isDrawn();

    /** Returns after the server has drawn everything. */
    void sync();
    bool isBroken() const { return client_.isBroken(); }

private:
    PatternWindow(XClient client, const Options &options);
    Result<void> create(const Options &options);
    Result<void> addPicture(QSize size);
    void put(SharedPicture &picture, const QRect &part, QPoint at);
    void showSmall(uint32_t number);
    QPoint blockPlace(uint32_t number) const;
    void countFinished(const Reply<xcb_generic_event_t> &event);

    XClient client_;
    PatternMode mode_;
    QSize size_;
    xcb_window_t window_ = XCB_WINDOW_NONE;
    xcb_gcontext_t context_;
    std::vector<SharedPicture> pictures_; ///< of the whole window or, first, of the moving block
    QPoint block_; ///< the moving block's position
    uint8_t completionEvent_ = 0;
    int unfinished_ = 0; ///< requests that the server has not read yet
};

} // namespace glimmerpane::testing
