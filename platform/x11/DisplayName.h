// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace glimmerpane::x11
{

/** Whether two values of DISPLAY name the same screen, as ":0", ":0.0" and "unix:0" do. */
bool isSameDisplay(const QString &one, const QString &other);

} // namespace glimmerpane::x11
