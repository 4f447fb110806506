// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace glimmerpane
{

/**
 * Shows a notification that stays until the person has seen it, by the desktop's notification
 * service (Desktop Notifications Specification, 1.2). Neither waits nor fails. Main thread.
 */
void sendNotification(const QString &title, const QString &text);

} // namespace glimmerpane
