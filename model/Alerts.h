// SPDX-License-Identifier: MIT
#pragma once

#include "services/Alert.h"
#include "services/Error.h"
#include "services/ServiceInterfaces.h"

namespace glimmerpane
{

/** The screen may not be read; the first button opens the desktop's settings. */
Alert permissionAlert(const Error &reason);

/** This session has no way to record the screen, so no settings help. */
Alert impossibleAlert(const Error &reason);

/** The desktop's settings program is not known. */
Alert settingsAlert(const Error &reason);

/** Asks before the program quits while it shares. */
Alert quitAlert();
constexpr int quitAlertButton = 1; ///< not the default, in case Ctrl+W was a slip while typing

/** Offers a newer version with the first button. */
Alert updateAlert(const UpdateInfo &info, const QString &currentVersion);

} // namespace glimmerpane
