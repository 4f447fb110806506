// SPDX-License-Identifier: MIT
#pragma once

#include <QLocale>

namespace glimmerpane
{

/**
 * Gives texts in the person's language from now on, as long as the current application object
 * lives. Where there is no catalogue for it they stay English. Main thread, before the first text.
 */
void installTranslations(const QLocale &locale = QLocale::system());

} // namespace glimmerpane
