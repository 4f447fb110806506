// SPDX-License-Identifier: MIT
#include "rig/Statistics.h"

#include <algorithm>
#include <cmath>

namespace glimmerpane::testing
{

double quantile(std::vector<double> values, double share)
{
    if (values.empty()) {
        return 0;
    }
    std::ranges::sort(values);
    const double place = share * static_cast<double>(values.size() - 1);
    const auto below = static_cast<size_t>(std::floor(place));
    const auto above = static_cast<size_t>(std::ceil(place));
    return std::lerp(values[below], values[above], place - std::floor(place));
}

} // namespace glimmerpane::testing
