// SPDX-License-Identifier: MIT
#include "update/UpdateCheck.h"

#include "update/UpdateRepository.h"

namespace glimmerpane
{

std::unique_ptr<UpdateRepositoryProtocol> makeUpdateRepository()
{
    return std::make_unique<UpdateRepository>(
        UpdateService{.address = QStringLiteral(GLIMMERPANE_UPDATE_URL)});
}

} // namespace glimmerpane
