// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <expected>
#include <stdexcept>
#include <utility>

namespace glimmerpane::testing
{

/** A value, or one line that says what failed. */
template<typename T>
using Result = std::expected<T, QString>;

inline std::unexpected<QString> failure(const QString &text)
{
    return std::unexpected(text);
}

/** Ends a test, a measurement or a demonstration that cannot go on, and all it has started. */
struct Failure : std::runtime_error {
    explicit Failure(const QString &text)
        : std::runtime_error(text.toStdString())
    {
    }
};

/** The value, or a Failure with the error's text. */
template<typename T>
T required(Result<T> result)
{
    if (!result) {
        throw Failure(result.error());
    }
    return std::move(result).value();
}

inline void require(bool holds, const char *otherwise)
{
    if (!holds) {
        throw Failure(QString::fromLatin1(otherwise));
    }
}

} // namespace glimmerpane::testing
