// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace glimmerpane
{

/** Why the desktop could not do what it was asked. */
struct Error {
    QString text; ///< for a person
    QString log; ///< for a log: the request and the code that came back
};

} // namespace glimmerpane
