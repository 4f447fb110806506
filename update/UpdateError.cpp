// SPDX-License-Identifier: MIT
#include "update/UpdateError.h"

namespace glimmerpane
{

Error UpdateError::failure() const
{
    switch (kind) {
    case Case::httpError:
        return {.text = Error::tr("HTTP error: %1").arg(statusCode),
                .log = QStringLiteral("httpError(statusCode: %1)").arg(statusCode)};
    case Case::invalidURL:
        return {.text = Error::tr("Invalid API URL"), .log = QStringLiteral("invalidURL")};
    case Case::invalidResponse:
        break;
    }
    return {.text = Error::tr("Invalid response from server"),
            .log = QStringLiteral("invalidResponse")};
}

} // namespace glimmerpane
