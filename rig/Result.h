// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <expected>
#include <utility>

namespace glimmerpane::testing
{

/** A value, or one line for a person that says what could not be done. */
template<typename T>
using Result = std::expected<T, QString>;

inline std::unexpected<QString> failure(const QString &text)
{
    return std::unexpected(text);
}

/** The value, or the end of the program with the error's text. */
template<typename T>
T required(Result<T> result)
{
    if (!result) {
        qFatal("%s", qPrintable(result.error()));
    }
    return std::move(result).value();
}

} // namespace glimmerpane::testing
