// SPDX-License-Identifier: MIT
#pragma once

#include <QCoroTask>
#include <QSize>

namespace glimmerpane::gnome
{

/**
 * The size of mutter's stage, which has all monitors, in its own units. Empty if mutter does not
 * say. Main thread.
 */
QCoro::Task<QSize> stageSize();

} // namespace glimmerpane::gnome
