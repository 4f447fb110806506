// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <nlohmann/json.hpp>

namespace glimmerpane
{

/** Reads text that may come from anywhere; what is no JSON gives a discarded value. */
inline nlohmann::json parseJson(const QByteArray &text)
{
    // The parser takes a NUL for the end, whatever follows.
    if (text.contains('\0')) {
        return nlohmann::json::value_t::discarded;
    }
    return nlohmann::json::parse(text.begin(), text.end(), nullptr, false);
}

} // namespace glimmerpane
