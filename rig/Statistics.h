// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cmath>
#include <vector>

namespace glimmerpane::testing
{

/** The value below which this share of the values lies, 0.5 being the median; 0 of no values. */
inline double quantile(std::vector<double> values, double share)
{
    if (values.empty()) {
        return 0;
    }
    std::ranges::sort(values);
    const double place = share * static_cast<double>(values.size() - 1);
    const auto below = static_cast<std::size_t>(place);
    const auto above = static_cast<std::size_t>(std::ceil(place));
    return std::lerp(values[below], values[above], place - std::floor(place));
}

inline double median(const std::vector<double> &values)
{
    return quantile(values, 0.5);
}

} // namespace glimmerpane::testing
