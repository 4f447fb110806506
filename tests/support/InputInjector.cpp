// SPDX-License-Identifier: MIT
#include "tests/support/InputInjector.h"

#include <xcb/xtest.h>

namespace glimmerpane::testing
{

void InputInjector::fake(uint8_t type, uint8_t detail, QPoint position) const
{
    xcb_test_fake_input(client_.connection(), type, detail, XCB_CURRENT_TIME, client_.root(),
                        static_cast<int16_t>(position.x()), static_cast<int16_t>(position.y()), 0);
    client_.sync();
}

void InputInjector::moveTo(QPoint position) const
{
    fake(XCB_MOTION_NOTIFY, 0, position);
}

void InputInjector::warpTo(QPoint position) const
{
    xcb_warp_pointer(client_.connection(), XCB_NONE, client_.root(), 0, 0, 0, 0,
                     static_cast<int16_t>(position.x()), static_cast<int16_t>(position.y()));
    client_.sync();
}

QPoint InputInjector::position() const
{
    const auto cookie = xcb_query_pointer(client_.connection(), client_.root());
    const Reply<xcb_query_pointer_reply_t> reply(
        xcb_query_pointer_reply(client_.connection(), cookie, nullptr));
    return reply ? QPoint(reply->root_x, reply->root_y) : QPoint(-1, -1);
}

void InputInjector::press(uint8_t button) const
{
    fake(XCB_BUTTON_PRESS, button);
}

void InputInjector::release(uint8_t button) const
{
    fake(XCB_BUTTON_RELEASE, button);
}

void InputInjector::click(QPoint position, uint8_t button) const
{
    moveTo(position);
    press(button);
    release(button);
}

void InputInjector::drag(QPoint from, QPoint to, int steps) const
{
    moveTo(from);
    press();
    for (int step = 1; step <= steps; ++step) {
        moveTo(from + (to - from) * step / steps);
    }
    release();
}

Result<uint8_t> InputInjector::keycode(uint32_t keysym) const
{
    const auto *setup = xcb_get_setup(client_.connection());
    const auto count = static_cast<uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    const auto cookie = xcb_get_keyboard_mapping(client_.connection(), setup->min_keycode, count);
    const Reply<xcb_get_keyboard_mapping_reply_t> reply(
        xcb_get_keyboard_mapping_reply(client_.connection(), cookie, nullptr));
    if (!reply) {
        return failure(QStringLiteral("no keyboard mapping"));
    }
    const auto *symbols = xcb_get_keyboard_mapping_keysyms(reply.get());
    const int length = xcb_get_keyboard_mapping_keysyms_length(reply.get());
    for (int i = 0; i < length; ++i) {
        if (symbols[i] == keysym) {
            return static_cast<uint8_t>(setup->min_keycode + i / reply->keysyms_per_keycode);
        }
    }
    return failure(QStringLiteral("no key for keysym 0x%1").arg(keysym, 0, 16));
}

Result<void> InputInjector::fakeKey(uint8_t type, uint32_t keysym) const
{
    const auto code = keycode(keysym);
    if (!code) {
        return failure(code.error());
    }
    fake(type, *code);
    return {};
}

Result<void> InputInjector::pressKey(uint32_t keysym) const
{
    return fakeKey(XCB_KEY_PRESS, keysym);
}

Result<void> InputInjector::releaseKey(uint32_t keysym) const
{
    return fakeKey(XCB_KEY_RELEASE, keysym);
}

Result<void> InputInjector::typeKey(uint32_t keysym) const
{
    const auto pressed = pressKey(keysym);
    return pressed ? releaseKey(keysym) : pressed;
}

void InputInjector::setFocus(xcb_window_t window) const
{
    xcb_set_input_focus(client_.connection(), XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
    client_.sync();
}

} // namespace glimmerpane::testing
