// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

namespace glimmerpane
{

/**
 * Ends the application's event loop on SIGINT and SIGTERM, so that everything is taken down in
 * order. A second signal ends the process at once. Main thread, once; `parent` is the application.
 */
void quitOnSignals(QObject *parent);

} // namespace glimmerpane
