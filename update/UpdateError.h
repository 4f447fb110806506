// SPDX-License-Identifier: MIT
#pragma once

#include "services/ServiceInterfaces.h"

#include <QtGlobal>

namespace glimmerpane
{

/** The update client's own failures, beside those of the transport and of the answer's text. */
struct UpdateError {
    enum class Case {
        httpError,
        invalidURL,
        invalidResponse,
    };

    Case kind = Case::invalidResponse;
    qint64 statusCode = 0; ///< of an httpError

    /** With a text for a person and one for a log. */
    UpdateFailure failure() const;
};

} // namespace glimmerpane
