// SPDX-License-Identifier: MIT
#pragma once

#include "rig/ColorWindow.h"
#include "rig/CursorPicture.h"
#include "rig/ProgramFixture.h"
#include "rig/WaitFor.h"
#include "rig/XWindows.h"

#include <QColor>
#include <QRegion>

#include <xcb/xcb_cursor.h>

namespace glimmerpane::testing
{

constexpr QSize screenSize(1280, 1024);
inline const QString areaOption = QStringLiteral("--area=400,300,600x400");
constexpr QRect area(400, 324, 600, 400);
constexpr QPoint besidesEverything(1200, 1000);
constexpr QRgb markColor = 0xff007aff;

/** The program with its selector, driven by the pointer. All places are root pixels. */
struct SelectorFixture : ProgramFixture {
    using ProgramFixture::ProgramFixture;

    /** With the main window beside the area. */
    bool launch(const QStringList &arguments = {areaOption})
    {
        start(arguments);
        if (!waitForMainWindow()) {
            return false;
        }
        moveMainWindow({20, 300});
        return true;
    }
    std::optional<QRect> frame() const
    {
        const auto window = selector();
        return window ? geometryOf(client, *window) : std::nullopt;
    }
    bool becomes(std::optional<QRect> expected) const
    {
        const bool isSo = waitFor([&] { return frame() == expected; }, patience);
        if (!isSo) {
            qInfo() << "the selector is at" << frame().value_or(QRect());
        }
        return isSo;
    }
    /** The main window enables its buttons a moment after a selector has closed. */
    bool open(QPoint button = places::setArea) const
    {
        return waitFor(
            [&] {
                click(button);
                return waitFor([&] { return selector().has_value(); }, std::chrono::seconds(1));
            },
            patience);
    }
    /** Opens the selector at the one place and drags it, as it is, to the other. */
    bool opensAndMoves(const QRect &from, const QRect &to) const
    {
        const QPoint grip(40, 40);
        if (!open() || !becomes(from)) {
            return false;
        }
        input.drag(from.topLeft() + grip, to.topLeft() + grip);
        return becomes(to);
    }
    void clickButton(int besidesMiddle) const
    {
        const QRect at = *frame();
        input.click(at.topLeft() + QPoint(at.width(), at.height()) / 2
                    + QPoint(0, besidesMiddle) * scaleFactor);
    }
    void confirm() const { clickButton(-15); }
    void cancel() const { clickButton(15); }
    QImage cursorAt(QPoint place) const
    {
        input.moveTo(place);
        return required(currentCursor(client)).image;
    }
    xcb_window_t windowUnderPointer() const
    {
        const auto pointer = ask<xcb_query_pointer, xcb_query_pointer_reply>(client, client.root());
        return pointer ? pointer->child : xcb_window_t(XCB_WINDOW_NONE);
    }
    /** Gives a window the first of these that the user's theme, or else the server, has. */
    void setCursor(const ColorWindow &window, const QList<const char *> &names) const
    {
        xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(client.get())).data;
        xcb_cursor_context_t *context = nullptr;
        xcb_cursor_context_new(client.get(), screen, &context);
        xcb_cursor_t cursor = XCB_NONE;
        for (qsizetype i = 0; i < names.size() && cursor == XCB_NONE; ++i) {
            cursor = xcb_cursor_load_cursor(context, names[i]);
        }
        xcb_cursor_context_free(context);
        xcb_change_window_attributes(client.get(), window.id(), XCB_CW_CURSOR, &cursor);
        client.sync();
    }
    QImage themeCursor(const QList<const char *> &names) const
    {
        const auto window = required(
            ColorWindow::show(client, {.rectangle = {besidesEverything, QSize(20, 20)}}));
        setCursor(window, names);
        input.moveTo(besidesEverything + QPoint(10, 10));
        // A compositor that starts covers everything for a moment.
        waitFor([&] { return windowUnderPointer() == window.id(); }, patience);
        return required(currentCursor(client)).image;
    }
};

/** How many pixels an outline of 2 pixels and eight handles have. */
inline int markedPixels(QSize size)
{
    const int outline = 4 * (size.width() + size.height()) - 16;
    const int corners = 4 * 18 * 18;
    const int bars = 4 * 60 * (8 - 2);
    return outline + corners + bars;
}

/** Whether exactly one whole selector is to be seen in the picture, wherever it is. */
inline bool showsWholeSelector(const QImage &image)
{
    QRect bounds;
    int marked = 0;
    for (int y = 0; y < image.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            if ((line[x] | 0xff000000) == markColor) {
                ++marked;
                bounds |= QRect(x, y, 1, 1);
            }
        }
    }
    return marked == markedPixels(bounds.size());
}

/** How a uniform colour should look through the glass. */
inline QColor throughGlass(const QColor &color)
{
    const auto channel
        = [](int value, int tint) { return static_cast<int>(0.505 * value + 0.495 * tint); };
    return {channel(color.red(), 24), channel(color.green(), 24), channel(color.blue(), 27)};
}

/** The place of an area on the screen, whose scale factor is 1. */
inline QRect onScreen(const CaptureFrame &frame)
{
    return {int(frame.x), int(screenSize.height() - frame.y - frame.height), int(frame.width),
            int(frame.height)};
}

inline bool isNear(const QColor &one, const QColor &other)
{
    constexpr int tolerance = 3;
    return std::abs(one.red() - other.red()) <= tolerance
        && std::abs(one.green() - other.green()) <= tolerance
        && std::abs(one.blue() - other.blue()) <= tolerance;
}

inline bool isEqualBut(const QImage &one, const QImage &other, const QRegion &left)
{
    for (const QRect &part : QRegion(one.rect()) - left) {
        if (one.copy(part) != other.copy(part)) {
            return false;
        }
    }
    return true;
}

} // namespace glimmerpane::testing
