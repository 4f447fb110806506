// SPDX-License-Identifier: MIT
#pragma once

#include "app/AreaOptions.h"

#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include <array>
#include <expected>
#include <optional>

namespace glimmerpane
{

/** What a running session is asked to do. */
enum class SessionOrder {
    Pause,
    Blank, ///< a pause with a plain picture
    Resume,
    TogglePause,
};

/** A new place for the running session's area, points. */
struct AreaMove {
    double x = 0;
    double y = 0;
    std::optional<double> width; ///< without a size, it stays
    std::optional<double> height;
};

/** What the command line asks for. */
struct LaunchOptions {
    /** x, y, width and height as text; all four are valid numbers. */
    std::optional<std::array<QString, 4>> area;
    AreaOptions areas;
    bool share = false;
    bool stop = false;
    bool select = false;
    std::optional<AreaMove> move;
    bool save = false; ///< stores the moved area
    std::optional<SessionOrder> order;
    std::optional<bool> frame; ///< whether one is to be shown around the shared area
    std::optional<bool> tray; ///< whether an icon is to be shown in the tray
    std::optional<bool> shortcuts; ///< whether the desktop is to offer some
    bool status = false;
    std::optional<QString> backend;
    std::optional<bool> listsOutput; ///< whether the window manager is to list the output window
    bool help = false;
    bool version = false;

    /** Whether anything is requested beyond showing the main window. */
    bool asksForSomething() const
    {
        return area || frame || tray || shortcuts || share || select || needsInstance()
            || areas.asksForSomething();
    }
    /** Whether this only makes sense for a program that is running already. */
    bool needsInstance() const { return stop || status || move || order; }
    /** Whether this can be done without a display if no program runs. */
    bool needsNoDisplay() const
    {
        return areas.concernOnlyStored()
            && !(area || frame || tray || shortcuts || share || select || needsInstance());
    }

    Q_DECLARE_TR_FUNCTIONS(glimmerpane::LaunchOptions)
};

/** Parses the arguments, without the program name. The error is one line for the user. */
std::expected<LaunchOptions, QString> launchOptions(const QStringList &arguments);

/** What --help prints. */
QString helpText();

} // namespace glimmerpane
