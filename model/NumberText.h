// SPDX-License-Identifier: MIT
#pragma once

#include <QStringView>

#include <optional>

namespace glimmerpane
{

/**
 * Parses the whole text as strtod(3) does in the C locale: decimal, hexadecimal, infinity and NaN
 * forms, "." as the decimal separator. Null if the text is empty, starts with white space or
 * continues after the number.
 */
std::optional<double> numberFromText(QStringView text);

} // namespace glimmerpane
