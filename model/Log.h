// SPDX-License-Identifier: MIT
#pragma once

#include <QLoggingCategory>

namespace glimmerpane
{

/** Says what this folder does; silent below warnings unless QT_LOGGING_RULES wants it. */
inline Q_LOGGING_CATEGORY(modelLog, "glimmerpane.model", QtWarningMsg)

} // namespace glimmerpane
