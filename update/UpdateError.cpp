// SPDX-License-Identifier: MIT
#include "update/UpdateError.h"

namespace glimmerpane
{

UpdateFailure UpdateError::failure() const
{
    switch (kind) {
    case Case::httpError:
        return {.description = UpdateFailure::tr("HTTP error: %1").arg(statusCode),
                .text = QStringLiteral("httpError(statusCode: %1)").arg(statusCode)};
    case Case::invalidURL:
        return {.description = UpdateFailure::tr("Invalid API URL"),
                .text = QStringLiteral("invalidURL")};
    case Case::invalidResponse:
        break;
    }
    return {.description = UpdateFailure::tr("Invalid response from server"),
            .text = QStringLiteral("invalidResponse")};
}

} // namespace glimmerpane
