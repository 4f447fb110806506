// SPDX-License-Identifier: MIT
#pragma once

namespace glimmerpane::portal
{

/** How the pointer is to come, where the desktop has the choice. */
enum class PointerWish {
    Apart, ///< from the picture, which is cheaper
    InPicture,
};

} // namespace glimmerpane::portal
