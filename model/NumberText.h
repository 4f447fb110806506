// SPDX-License-Identifier: MIT
#pragma once

#include <QStringView>

#include <optional>

namespace glimmerpane
{

/**
 * The number that the whole text is, by the rules of strtod(3) in the C locale: decimal,
 * hexadecimal, infinity and not-a-number forms, "." as the decimal separator. Nothing for an empty
 * text, and for one that begins with white space or goes on after the number.
 */
std::optional<double> numberFromText(QStringView text);

} // namespace glimmerpane
