// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <expected>

namespace glimmerpane::testing
{

/** A value, or one line for a person that says what could not be done. */
template<typename T>
using Result = std::expected<T, QString>;

inline std::unexpected<QString> failure(const QString &text)
{
    return std::unexpected(text);
}

} // namespace glimmerpane::testing
