// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace glimmerpane
{

/**
 * Shows a notification that stays until dismissed, through the desktop's notification service
 * (Desktop Notifications Specification, 1.2). Never blocks or fails. Main thread.
 */
void sendNotification(const QString &title, const QString &text);

} // namespace glimmerpane
