// SPDX-License-Identifier: MIT
#pragma once

#include <QLocale>

namespace glimmerpane
{

/**
 * Translates texts into the user's language from now on, for the lifetime of the current
 * application object. They stay English if there is no catalogue for it. Main thread, before the
 * first text.
 */
void installTranslations(const QLocale &locale = QLocale::system());

} // namespace glimmerpane
