// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <nlohmann/json.hpp>

namespace glimmerpane
{

/** Parses untrusted text. Returns a discarded value if it is not JSON. */
inline nlohmann::json parseJson(const QByteArray &text)
{
    // The parser would treat a NUL as the end and ignore the rest.
    if (text.contains('\0')) {
        return nlohmann::json::value_t::discarded;
    }
    return nlohmann::json::parse(text.begin(), text.end(), nullptr, false);
}

} // namespace glimmerpane
