// SPDX-License-Identifier: MIT
#pragma once

#include "services/ServiceInterfaces.h"

#include <QtGlobal>

namespace glimmerpane
{

/** The update client's own failures, besides those of the transport and of parsing the answer. */
struct UpdateError {
    enum class Case {
        httpError,
        invalidURL,
        invalidResponse,
    };

    Case kind = Case::invalidResponse;
    qint64 statusCode = 0; ///< of an httpError

    /** With a text for the user and one for the log. */
    Error failure() const;
};

} // namespace glimmerpane
