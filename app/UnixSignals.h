// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

namespace glimmerpane
{

/**
 * Ends the application's event loop on SIGINT, SIGTERM and, unless it is ignored, SIGHUP, for an
 * orderly shutdown. A second signal ends the process immediately. Main thread, once; `parent` is
 * the application.
 */
void quitOnSignals(QObject *parent);

} // namespace glimmerpane
