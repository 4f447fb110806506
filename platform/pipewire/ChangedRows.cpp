// SPDX-License-Identifier: MIT
#include "platform/pipewire/ChangedRows.h"

#include <cstring>

namespace glimmerpane::pipewire
{

namespace
{

constexpr std::ptrdiff_t bytesPerPixel = 4;

} // namespace

QRect changedRows(const MappedPixels &before, const MappedPixels &now, QRect within)
{
    const auto width = static_cast<std::size_t>(within.width() * bytesPerPixel);
    const auto isSame = [&](int y) {
        const std::ptrdiff_t left = within.x() * bytesPerPixel;
        return std::memcmp(before.data + y * before.stride + left, now.data + y * now.stride + left,
                           width)
            == 0;
    };
    while (within.height() > 0 && isSame(within.top())) {
        within.setTop(within.top() + 1);
    }
    while (within.height() > 0 && isSame(within.bottom())) {
        within.setBottom(within.bottom() - 1);
    }
    return within;
}

} // namespace glimmerpane::pipewire
