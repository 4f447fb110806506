// SPDX-License-Identifier: MIT
#pragma once

#include "platform/AreaMarks.h"
#include "platform/Displays.h"
#include "platform/OutputWindow.h"
#include "platform/OverlayWindow.h"
#include "platform/PressMonitor.h"
#include "platform/ScreenSource.h"
#include "platform/Shell.h"

#include <QString>

#include <memory>

namespace glimmerpane
{

/** Which back end the user wants. */
struct BackendRequest {
    QString name; ///< empty: the first that works here
    bool listsOutput = false; ///< the window manager is to list the output window, if possible

    friend bool operator==(const BackendRequest &, const BackendRequest &) = default;
};

/** How an area moves while the handle of its frame is dragged. */
enum class AreaDrag {
    Follows, ///< with the pointer
    MovesAtEnd, ///< a move is costly, or the handle must stay to get the pointer's place right
    Impossible, ///< the handle would lose the pointer
};

/** The desktop that the program runs on, by roles; each may be played by another system. */
struct Backend {
    QString name; ///< as --backend takes it
    std::shared_ptr<Displays> displays;
    std::shared_ptr<ScreenSource> screen;
    std::shared_ptr<OutputWindows> outputWindows;
    std::shared_ptr<Overlays> overlays;
    std::shared_ptr<Presses> presses; ///< null if the desktop does not report presses
    std::shared_ptr<Shell> shell;
    std::shared_ptr<AreaMarksMaker> marks = nullptr; ///< never null outside tests
    AreaDrag areaDrag = AreaDrag::Follows;
};

} // namespace glimmerpane
