// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

namespace glimmerpane::testing
{

/** The value below which this share of the values lies, 0.5 being the median; 0 of no values. */
double quantile(std::vector<double> values, double share);

inline double median(const std::vector<double> &values)
{
    return quantile(values, 0.5);
}

} // namespace glimmerpane::testing
