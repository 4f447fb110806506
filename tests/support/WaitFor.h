// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>

namespace glimmerpane::testing
{

/**
 * Looks at the condition again and again until it holds or the limit has passed, and handles the
 * Qt events of the calling thread in between. Returns whether the condition held.
 */
bool waitFor(const std::function<bool()> &condition, std::chrono::milliseconds limit);

} // namespace glimmerpane::testing
