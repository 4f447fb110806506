// SPDX-License-Identifier: MIT
#pragma once

#include "rig/Browser.h"

namespace glimmerpane::testing
{

std::unique_ptr<Browser> startFirefox(const BrowserOptions &options);

} // namespace glimmerpane::testing
