// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>

namespace glimmerpane
{

/** What the icon in the tray tells at a glance. */
enum class TrayState {
    Idle,
    Starting,
    Sharing,
    Unwatched, ///< sharing, but nobody looks at it yet
    Paused,
};

/** The program's icon with a badge for the state, in the sizes that panels use. */
QIcon trayPicture(const QIcon &program, TrayState state);

} // namespace glimmerpane
