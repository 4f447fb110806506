// SPDX-License-Identifier: MIT
#pragma once

#include "rig/XClient.h"

#include <xcb/xtest.h>

namespace glimmerpane::testing
{

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

/**
 * Simulates mouse and keyboard through XTEST. Positions are root pixels. Every call returns after
 * the server has handled it.
 */
class InputInjector
{
public:
    /** The client must outlive the object. */
    explicit InputInjector(const XClient &client)
        : client_(client)
    {
    }

    void moveTo(QPoint position) const { fake(XCB_MOTION_NOTIFY, 0, position); }

    /** 1 left, 2 middle, 3 right, 4 to 7 wheel. */
    void press(uint8_t button = 1) const { fake(XCB_BUTTON_PRESS, button); }
    void release(uint8_t button = 1) const { fake(XCB_BUTTON_RELEASE, button); }
    void click(QPoint position, uint8_t button = 1) const
    {
        moveTo(position);
        press(button);
        release(button);
    }

    /** Presses at the first place, moves in steps and releases at the second. */
    void drag(QPoint from, QPoint to, int steps = 10) const
    {
        moveTo(from);
        press();
        for (int step = 1; step <= steps; ++step) {
            moveTo(from + (to - from) * step / steps);
        }
        release();
    }

    /** A key by its X keysym, such as 0xff1b for Escape; false if the keyboard lacks it. */
    bool pressKey(uint32_t keysym) const { return fakeKey(XCB_KEY_PRESS, keysym); }
    bool releaseKey(uint32_t keysym) const { return fakeKey(XCB_KEY_RELEASE, keysym); }
    bool typeKey(uint32_t keysym) const { return pressKey(keysym) && releaseKey(keysym); }

    void setFocus(xcb_window_t window) const
    {
        xcb_set_input_focus(client_.connection(), XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
        client_.sync();
    }

private:
    void fake(uint8_t type, uint8_t detail, QPoint position = {}) const
    {
        xcb_test_fake_input(client_.connection(), type, detail, XCB_CURRENT_TIME, client_.root(),
                            static_cast<int16_t>(position.x()), static_cast<int16_t>(position.y()),
                            0);
        client_.sync();
    }

    bool fakeKey(uint8_t type, uint32_t keysym) const
    {
        const auto *const setup = xcb_get_setup(client_.connection());
        const auto first = setup->min_keycode;
        const auto keys = ask<xcb_get_keyboard_mapping, xcb_get_keyboard_mapping_reply>(
            client_, first, static_cast<uint8_t>(setup->max_keycode - first + 1));
        const int count = keys ? xcb_get_keyboard_mapping_keysyms_length(keys.get()) : 0;
        for (int i = 0; i < count; ++i) {
            if (xcb_get_keyboard_mapping_keysyms(keys.get())[i] == keysym) {
                fake(type, static_cast<uint8_t>(first + i / keys->keysyms_per_keycode));
                return true;
            }
        }
        return false;
    }

    const XClient &client_;
};

} // namespace glimmerpane::testing
