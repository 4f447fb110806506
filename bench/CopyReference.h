// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

namespace glimmerpane::bench
{

/**
 * The least that moving a frame can cost here: processor time of one memcpy of so many bytes, in
 * milliseconds, the median of many through buffers that together exceed every cache.
 */
double copyMilliseconds(std::size_t bytes);

} // namespace glimmerpane::bench
