// SPDX-License-Identifier: MIT
#include "storage/CaptureFrameJson.h"
#include "tests/fuzz/Require.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>

using namespace glimmerpane;
using testing::require;

namespace
{

using Numbers = std::array<double, 4>;
using Bits = std::array<std::uint64_t, 4>; // -0.0 equals 0.0

void readsBack(const CaptureFrame &frame)
{
    const auto json = toJson(frame);
    require(json.has_value(), "an area that was read can be written");
    const auto again = captureFrameFromJson(*json);
    require(again && std::bit_cast<Bits>(*again) == std::bit_cast<Bits>(frame),
            "an area that was written reads back bit for bit");
}

/** Another reader of JSON as the judge; it refuses some of what ours takes, deep nesting say. */
void agreesWithQt(const CaptureFrame &frame, const QByteArray &json)
{
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (document.isObject()) {
        const auto number = [&](QLatin1StringView name) { return document[name].toDouble(NAN); };
        const Numbers numbers{number(QLatin1StringView("x")), number(QLatin1StringView("y")),
                              number(QLatin1StringView("width")),
                              number(QLatin1StringView("height"))};
        require(std::bit_cast<Numbers>(frame) == numbers, "both readers see the same area");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray json = QByteArrayView(data, qsizetype(size)).toByteArray();
    if (const auto frame = captureFrameFromJson(json)) {
        readsBack(*frame);
        agreesWithQt(*frame, json);
    }
    return 0;
}
