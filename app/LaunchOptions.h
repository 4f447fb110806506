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

/** What the command line asks for. */
struct LaunchOptions {
    /** x, y, width and height as text; all four are valid numbers. */
    std::optional<std::array<QString, 4>> area;
    AreaOptions areas;
    bool share = false;
    bool stop = false;
    bool select = false;
    bool status = false;
    std::optional<QString> backend;
    std::optional<bool> listsOutput; ///< whether the window manager is to list the output window
    bool help = false;
    bool version = false;

    /** Whether anything is requested beyond showing the main window. */
    bool asksForSomething() const
    {
        return area || share || stop || select || status || areas.asksForSomething();
    }
    /** Whether this can be done without a display if no program runs. */
    bool needsNoDisplay() const
    {
        return areas.concernOnlyStored() && !(area || share || stop || select || status);
    }

    Q_DECLARE_TR_FUNCTIONS(glimmerpane::LaunchOptions)
};

/** Parses the arguments, without the program name. The error is one line for the user. */
std::expected<LaunchOptions, QString> launchOptions(const QStringList &arguments);

/** What --help prints. */
QString helpText();

} // namespace glimmerpane
