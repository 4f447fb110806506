// SPDX-License-Identifier: MIT
#pragma once

#include "bench/Measurement.h"

#include <array>

namespace glimmerpane::bench
{

/** The tools that show a part of the screen in a window: this program and alternatives. */
enum class Tool { Glimmerpane, GStreamer, Ffplay, Obs };

inline constexpr std::array tools{Tool::Glimmerpane, Tool::GStreamer, Tool::Ffplay, Tool::Obs};

QString toolName(Tool tool);
/** The beginning of the title of its window. */
QString toolTitle(Tool tool);

/** The place of everything on a display, so that nothing covers anything. Root pixels. */
struct StageLayout {
    QRect area; ///< to be shown
    QRect player; ///< the tool's window, below the area
    QRect beside; ///< another window, right of the area
    QSize screen;

    static StageLayout of(QSize areaSize);
};

/** A tool that shows the area, ended with the object. */
struct RunningTool {
    ChildProcess process; ///< Glimmerpane is the desktop's own
    CapturedWindow view; ///< of its window
    PictureOf source = PictureOf::Screen;
    pid_t pid = 0;
};

/** Returns once its window stands where it should; the desktop must outlive the tool. */
RunningTool startTool(MeasuredDesktop &desktop, Tool tool, const StageLayout &layout);

} // namespace glimmerpane::bench
