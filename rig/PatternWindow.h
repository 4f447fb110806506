// SPDX-License-Identifier: MIT
#pragma once

#include "rig/SharedPicture.h"

#include <vector>

namespace glimmerpane::testing
{

enum class PatternMode {
    FullMotion, ///< every pixel of the window changes from frame to frame
    SmallChange, ///< a still picture, a moving block of 320x180 and the number
    Cursor, ///< a still picture, a moving block of 32x32 and the number's strip
    Typing, ///< the same with letters of 12x20, each beside the one before
    Still, ///< one picture; a frame changes nothing
};

/**
 * An override-redirect window that shows numbered frames through shared memory, on a connection
 * of its own. The pictures lie ready; a frame costs the number and one request.
 */
class PatternWindow
{
public:
    /** Mapped, on top of everything there is, showing frame 0. Root pixels. */
    static Result<PatternWindow> open(const QString &displayName, const QRect &rectangle,
                                      PatternMode mode = PatternMode::FullMotion);

    xcb_window_t id() const { return window_; }
    PatternMode mode() const { return mode_; }

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
    PatternWindow(XClient client, const QRect &rectangle, PatternMode mode);
    Result<void> create(const QRect &rectangle);
    Result<void> addPictures(QSize size, uint32_t count);
    void countFinished(const Reply<xcb_generic_event_t> &event);
    void put(SharedPicture &picture, const QRect &part, QPoint at);
    void showFull(uint32_t number);
    void showSmall(uint32_t number);
    QSize blockSize() const;
    QPoint blockPlace(uint32_t number, QSize block) const;

    XClient client_;
    PatternMode mode_;
    QSize size_;
    xcb_window_t window_ = XCB_WINDOW_NONE;
    xcb_gcontext_t context_;
    std::vector<SharedPicture> pictures_; ///< the moving ones
    std::vector<SharedPicture> still_; ///< none, or the one still picture
    QPoint block_; ///< where the moving block is
    uint8_t completionEvent_ = 0;
    int unfinished_ = 0; ///< requests that the server has not read yet
};

} // namespace glimmerpane::testing
