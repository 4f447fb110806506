// SPDX-License-Identifier: MIT
#pragma once

#include "rig/CapturedWindow.h"
#include "rig/Program.h"

#include <array>

namespace glimmerpane::bench
{

/** What shows a part of the screen in a window: this program and what people use instead. */
enum class Tool { Glimmerpane, GStreamer, Ffplay, Obs };

inline constexpr std::array tools{Tool::Glimmerpane, Tool::GStreamer, Tool::Ffplay, Tool::Obs};

QString toolName(Tool tool);

/** The place of everything on a display, so that nothing covers anything. Root pixels. */
struct StageLayout {
    QRect area; ///< to be shown
    QRect player; ///< the tool's window, below the area
    QPoint beside; ///< the tool's other window, right of the area
    QSize screen;

    static StageLayout of(QSize areaSize);
};

/** A tool that shows the area, ended with the object. */
struct RunningTool {
    std::optional<Program> glimmerpane{};
    testing::ChildProcess process{}; ///< any other
    testing::CapturedWindow view; ///< of its window
    testing::PictureOf source = testing::PictureOf::Screen;

    pid_t pid() const { return glimmerpane ? glimmerpane->pid() : process.pid(); }
};

struct ToolOptions {
    Tool tool = Tool::Glimmerpane;
    QString glimmerpane; ///< its executable
    StageLayout layout;
};

/** Returns once its window stands where it should; the desktop must outlive the tool. */
Result<RunningTool> startTool(const Desktop &desktop, const ToolOptions &options);

} // namespace glimmerpane::bench
