// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

#include <chrono>
#include <functional>

namespace glimmerpane::testing
{

/**
 * Takes the two pictures again and again until they have the same pixels or the limit has passed.
 * Returns whether they did; where not, it saves the last two beside the running test, named after
 * the test function.
 */
bool becomeEqual(const std::function<QImage()> &actual, const std::function<QImage()> &expected,
                 std::chrono::milliseconds limit);

} // namespace glimmerpane::testing
