// SPDX-License-Identifier: MIT
#pragma once

#include "rig/ChildProcess.h"
#include "rig/InputInjector.h"
#include "rig/SessionBus.h"
#include "rig/WindowManagers.h"
#include "rig/XClient.h"
#include "rig/XvfbServer.h"
#include "services/CaptureFrame.h"

#include <QImage>
#include <QRect>
#include <QTemporaryDir>

#include <optional>

namespace glimmerpane::testing
{

constexpr auto patience = std::chrono::seconds(10); ///< the longest wait for a condition

/**
 * The built program on a private display, operated as a user would. Isolated from the settings, bus
 * and clients of other sessions.
 */
class ProgramFixture
{
public:
    using WindowManager = testing::WindowManager;

    explicit ProgramFixture(WindowManager manager = WindowManager::None, int scale = 1,
                            QSize screen = {1280, 1024});

    XvfbServer server;
    XClient client;
    InputInjector input;
    const int scaleFactor; ///< pixels for each point
    QTemporaryDir configuration; ///< XDG_CONFIG_HOME
    QString executable = QStringLiteral(GLIMMERPANE_PROGRAM); ///< that is started from now on
    QProcessEnvironment environment; ///< of programs that are started from now on
    ChildProcess program;
    std::optional<SessionBus> bus; ///< none unless startBus()

    /** From now on programs have a session bus. */
    void startBus();
    /** Starts the program; a running one is ended first. */
    void start(const QStringList &arguments = {});
    /**
     * The same with an area, in root pixels, at a scale of 1. Returns once the main window is in
     * place and, if it shares from the start, the output window exists.
     */
    void startWith(const QRect &area, QPoint mainWindowPlace, bool share);
    /** Starts another instance and waits until it ends. Returns its exit code, -1 if it runs on. */
    int launchAgain(const QStringList &arguments = {}, QByteArray *says = nullptr) const;
    /**
     * Waits until the program ends and returns its exit code, -1 if it runs on. Prints its output
     * unless that is 0.
     */
    int waitForExit();
    /** Ends it as a desktop session would. Must succeed. */
    void end();

    std::optional<xcb_window_t> mainWindow() const;
    std::optional<xcb_window_t> alert() const;
    std::optional<xcb_window_t> outputWindow() const;
    /** The area selector. */
    std::optional<xcb_window_t> selector() const;
    /** How many of the program's windows are shown besides the output: main window, alerts. */
    int shownWindows() const;

    bool waitForMainWindow() const;
    void moveMainWindow(QPoint place) const;
    xcb_window_t awaitOutputWindow();
    /** Waits until the output window shows the pixels of this rectangle of the root. */
    bool showsArea(QRect rootRectangle);
    bool waitForNoOutput() const;
    /** Whether it has a capture thread, which ends a moment after the output has gone. */
    bool isCapturing() const;

    /** Clicks "Start sharing" until it works, which it does once the previous session has ended. */
    bool startAgain() const;

    /** Clicks "Stop sharing" until there is no output, because an alert may have just closed. */
    bool stopSharing() const;

    /** Clicks a position in the main window, in its points. */
    void click(QPoint place) const;
    /** Whether the button is filled with its colour: disabled ones are grey. */
    bool canPress(QPoint button) const;
    /** Waits until the button can be pressed. Returns where to click it, in root pixels. */
    QPoint awaitButton(QPoint button) const;
    /** Types the key until the alert closes; the alert may not have the keyboard focus at first. */
    bool answerAlert(std::uint32_t key) const;
    /** Types an area into the four fields. False if it is not saved. */
    bool typeArea(const CaptureFrame &area) const;
    /** Replaces the text of one field. */
    bool type(QPoint field, const QByteArray &text) const;
    bool isFocused(QPoint field) const;

    QString settingsFile() const;
    std::optional<CaptureFrame> savedArea() const;

private:
    QPoint placeOf(QPoint place) const;
    void requireOf(bool holds, const char *otherwise) const;

    QTemporaryDir scratch_;
    mutable std::optional<xcb_window_t> latestMain_; ///< saves a search of all windows
    mutable std::optional<xcb_window_t> latestSelector_;
    ChildProcess windowManager_;
    ChildProcess compositor_;
};

/** Where the main window's controls are, in its points; taken from a screenshot. */
namespace places
{
constexpr QPoint startSharing(160, 98);
constexpr QPoint setArea(160, 142);
constexpr QPoint resetArea(160, 186);
constexpr QPoint stopSharing(160, 230);
constexpr QPoint nothing(160, 400);
constexpr QPoint fields[] = {{87, 301}, {233, 301}, {87, 362}, {233, 362}};
} // namespace places

} // namespace glimmerpane::testing
