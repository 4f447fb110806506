// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

namespace glimmerpane
{

/**
 * The settings program of a desktop, by its name in XDG_CURRENT_DESKTOP (a colon-separated list);
 * nothing for a desktop that is not known.
 */
std::optional<QString> settingsProgram(const QString &currentDesktop);

} // namespace glimmerpane
