// SPDX-License-Identifier: MIT
#pragma once

#include "services/ServiceInterfaces.h"

#include <memory>

namespace glimmerpane
{

/** The update client of this build; null if built without an update check. */
std::unique_ptr<UpdateRepositoryProtocol> makeUpdateRepository();

} // namespace glimmerpane
