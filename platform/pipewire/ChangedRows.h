// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Frame.h"

namespace glimmerpane::pipewire
{

/**
 * The rows of a rectangle from the first to the last in which two pictures of the same size differ;
 * empty if they do not. `within` lies inside of them.
 */
QRect changedRows(const MappedPixels &before, const MappedPixels &now, QRect within);

} // namespace glimmerpane::pipewire
