// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QString>

namespace glimmerpane
{

/** How a request came to nothing. */
enum class Outcome {
    cancelled, ///< the user, or the program itself, withdrew it
    unavailable, ///< this system cannot do it; trying again does not help
    impossible, ///< nor can it in another way
    failed,
};

/** Why a request came to nothing. */
struct Error {
    QString text; ///< for the user
    QString log; ///< for the log: the request and its error code
    Outcome outcome = Outcome::failed;

    Q_DECLARE_TR_FUNCTIONS(glimmerpane::Error)
};

} // namespace glimmerpane
