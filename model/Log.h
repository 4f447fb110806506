// SPDX-License-Identifier: MIT
#pragma once

#include <QLoggingCategory>

namespace glimmerpane
{

/** For this folder's messages. Silent below warnings unless enabled by QT_LOGGING_RULES. */
inline Q_LOGGING_CATEGORY(modelLog, "glimmerpane.model", QtWarningMsg)

} // namespace glimmerpane
