// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

namespace glimmerpane
{

/**
 * The path of the desktop's settings program, for the first name in XDG_CURRENT_DESKTOP (separated
 * by colons) that has one in PATH; null for an unknown desktop.
 */
std::optional<QString> settingsProgram(const QString &currentDesktop);

} // namespace glimmerpane
