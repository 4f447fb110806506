// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

namespace glimmerpane
{

/**
 * Where the settings program of a desktop is, by the first name in XDG_CURRENT_DESKTOP (a list with
 * colons) that has one in PATH; nothing for a desktop that is not known.
 */
std::optional<QString> settingsProgram(const QString &currentDesktop);

} // namespace glimmerpane
