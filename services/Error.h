// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QString>

namespace glimmerpane
{

/** Why the desktop could not do what it was asked. */
struct Error {
    QString text; ///< for a person
    QString log; ///< for a log: the request and the code that came back

    Q_DECLARE_TR_FUNCTIONS(glimmerpane::Error)
};

} // namespace glimmerpane
