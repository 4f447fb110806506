// SPDX-License-Identifier: MIT
#pragma once

#include "rig/SharedPicture.h"

#include <vector>

namespace glimmerpane::testing
{

enum class PatternMode {
    FullMotion, ///< every pixel of the window changes from frame to frame
    Cursor, ///< a still picture, a moving block of 32x32 and the number's strip
    Typing, ///< the same with letters of 12x20, each beside the one before
};

/**
 * A window that shows numbered frames through shared memory, on a connection of its own. The
 * pictures lie ready; a frame costs the number and one request, or three where little moves.
 */
class PatternWindow
{
public:
    struct Options {
        QRect rectangle; ///< root pixels
        PatternMode mode = PatternMode::FullMotion;
        QString title{}; ///< of an ordinary window; without one no window manager knows of it
    };

    /** Mapped, on top of everything there is, showing frame 0. */
    static Result<PatternWindow> open(const QString &displayName, const Options &options);

    /**
     * Sends one frame. False, with nothing shown, while the server is too far behind to have a
     * picture free.
     */
    bool show(uint32_t number);

    /** Whether the server has drawn all that was sent, as far as it has told. */
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
    QPoint block_; ///< where the moving block is
    uint8_t completionEvent_ = 0;
    int unfinished_ = 0; ///< requests that the server has not read yet
};

} // namespace glimmerpane::testing
