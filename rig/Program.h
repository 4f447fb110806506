// SPDX-License-Identifier: MIT
#pragma once

#include "rig/ButtonFinder.h"
#include "rig/Desktop.h"

namespace glimmerpane::testing
{

/** Glimmerpane as a person runs it, on a private display. */
class Program
{
public:
    struct Options {
        QString executable; ///< path
        QRect area; ///< to share, root pixels
        bool share = false; ///< from the start
    };

    /** Returns at once. The desktop must outlive the object, at the same address. */
    static Result<Program> start(const Desktop &desktop, const Options &options);

    pid_t pid() const { return process_.pid(); }

    /** The main window, once it is on the screen. */
    Result<xcb_window_t> mainWindow();
    /** The window for viewers, once it is on the display and has a picture. */
    Result<xcb_window_t> outputWindow();
    /** The same at this moment, if it is there. */
    std::optional<xcb_window_t> currentOutput() const;

    /**
     * Asks the window manager to put the main window there; returns once it is there and beside
     * the rectangle that it must not cover. Root pixels.
     */
    Result<void> placeMainWindow(QPoint place, const QRect &uncovered);

    /** Clicks on "Set area"; returns the window on which the area is chosen once it is shown. */
    Result<xcb_window_t> openSelector();

    /** Clicks on the button once it can be pressed. Returns when the click has been sent. */
    Result<void> clickStart();
    Result<void> clickStop();
    /** Where to click, root pixels; nothing while the button is disabled or hidden. */
    std::optional<QPoint> startButton() const;
    std::optional<QPoint> stopButton() const;
    /** The same of "Set area", once it can be pressed. */
    Result<QPoint> awaitSetArea() const;

    /** Ends it as a session does; fails unless it leaves with exit code 0. */
    Result<void> end();

private:
    Program(const Desktop &desktop, ChildProcess process)
        : desktop_(&desktop)
        , process_(std::move(process))
    {
    }
    Result<xcb_window_t> await(const QString &title);
    Result<QPoint> await(std::optional<QPoint> (Program::*button)() const) const;
    std::optional<QPoint> button(ButtonColor color) const;
    /** Can be pressed whenever sharing can be started. */
    std::optional<QPoint> setAreaButton() const;
    Result<void> click(std::optional<QPoint> (Program::*button)() const);
    QString problem(const QString &text) const;

    const Desktop *desktop_;
    ChildProcess process_;
};

/** The title of the window on which the area is chosen. */
QString selectorTitle();

/** The direct child of the root that holds the window: itself, or the window manager's frame. */
xcb_window_t topLevelOf(const XClient &client, xcb_window_t window);

/** The value of --area for a rectangle of root pixels on a display of this size. */
QString areaText(const QRect &area, QSize screen);

/** Glimmerpane's executable: the one given, or else the one built beside this program. */
QString executableOr(const QString &given);

} // namespace glimmerpane::testing
