// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Backend.h"
#include "services/RestoreTokenStore.h"

#include <QStringList>

namespace glimmerpane
{

/** The names that --backend takes, in the order in which they are tried. */
QStringList backendNames();

/**
 * Chooses how Qt shows windows. Fails if it cannot show any. Call before creating the application
 * object.
 */
std::expected<void, Error> prepareDesktop();

/** Names the display that windows are shown on; empty if there is none. */
QString displayName();

/** Whether two such names mean the same display. */
bool isSameDisplay(const QString &one, const QString &other);

/**
 * The named back end, or else the first that works here. `tokens` saves the user the desktop's
 * question about recording the screen. Needs a QGuiApplication.
 */
std::expected<Backend, Error> makeBackend(const BackendRequest &request,
                                          const std::shared_ptr<RestoreTokenStore> &tokens);

} // namespace glimmerpane
