// SPDX-License-Identifier: MIT
#include "storage/CaptureFrame.h"

#include <nlohmann/json.hpp>

#include <array>
#include <cmath>

namespace glimmerpane
{

namespace
{

constexpr std::array fields{
    std::pair{"x", &CaptureFrame::x},
    std::pair{"y", &CaptureFrame::y},
    std::pair{"width", &CaptureFrame::width},
    std::pair{"height", &CaptureFrame::height},
};

} // namespace

std::optional<QByteArray> toJson(const CaptureFrame &frame)
{
    nlohmann::json object = nlohmann::json::object();
    for (const auto &[name, member] : fields) {
        if (!std::isfinite(frame.*member)) {
            return std::nullopt;
        }
        object[name] = frame.*member;
    }
    return QByteArray::fromStdString(object.dump());
}

std::optional<CaptureFrame> captureFrameFromJson(const QByteArray &json)
{
    // The parser takes a NUL for the end, whatever follows.
    if (json.contains('\0')) {
        return std::nullopt;
    }
    const auto object = nlohmann::json::parse(json.begin(), json.end(), nullptr, false);
    if (!object.is_object()) {
        return std::nullopt;
    }
    CaptureFrame frame;
    for (const auto &[name, member] : fields) {
        const auto value = object.find(name);
        if (value == object.end() || !value->is_number()) {
            return std::nullopt;
        }
        frame.*member = value->get<double>();
    }
    return frame;
}

} // namespace glimmerpane
