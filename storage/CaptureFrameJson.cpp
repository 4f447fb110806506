// SPDX-License-Identifier: MIT
#include "storage/CaptureFrameJson.h"

#include "services/Json.h"

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
    const auto object = parseJson(json);
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
