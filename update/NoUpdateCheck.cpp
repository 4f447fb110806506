// SPDX-License-Identifier: MIT
#include "update/UpdateCheck.h"

namespace glimmerpane
{

std::unique_ptr<UpdateRepositoryProtocol> makeUpdateRepository()
{
    return nullptr;
}

} // namespace glimmerpane
