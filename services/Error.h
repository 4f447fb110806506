// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QString>

namespace glimmerpane
{

/** Why a request to the desktop failed. */
struct Error {
    QString text; ///< for the user
    QString log; ///< for the log: the request and its error code

    Q_DECLARE_TR_FUNCTIONS(glimmerpane::Error)
};

} // namespace glimmerpane
