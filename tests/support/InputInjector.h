// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/XClient.h"

namespace glimmerpane::testing
{

/**
 * Plays a person's mouse and keyboard through XTEST. Positions are root pixels. Every call
 * returns after the server has handled it.
 */
class InputInjector
{
public:
    /** The client must outlive the object. */
    explicit InputInjector(const XClient &client)
        : client_(client)
    {
    }

    void moveTo(QPoint position) const;
    /** Moves the pointer without any device event, as a program does. */
    void warpTo(QPoint position) const;
    QPoint position() const;

    /** 1 left, 2 middle, 3 right, 4 to 7 wheel. */
    void press(uint8_t button = 1) const;
    void release(uint8_t button = 1) const;
    void click(QPoint position, uint8_t button = 1) const;
    /** Presses at the first place, moves there in steps and releases at the second. */
    void drag(QPoint from, QPoint to, int steps = 10) const;

    /** A key by its X keysym, such as 0xff1b for Escape. Fails if the keyboard lacks it. */
    Result<void> pressKey(uint32_t keysym) const;
    Result<void> releaseKey(uint32_t keysym) const;
    Result<void> typeKey(uint32_t keysym) const;

    void setFocus(xcb_window_t window) const;

private:
    void fake(uint8_t type, uint8_t detail, QPoint position = {}) const;
    Result<uint8_t> keycode(uint32_t keysym) const;
    Result<void> fakeKey(uint8_t type, uint32_t keysym) const;

    const XClient &client_;
};

namespace keys
{
inline constexpr uint32_t tab = 0xff09;
inline constexpr uint32_t enter = 0xff0d;
inline constexpr uint32_t escape = 0xff1b;
inline constexpr uint32_t space = 0x0020;
inline constexpr uint32_t shift = 0xffe1;
inline constexpr uint32_t control = 0xffe3;
inline constexpr uint32_t alt = 0xffe9;
} // namespace keys

} // namespace glimmerpane::testing
