// SPDX-License-Identifier: MIT
#include "tests/fuzz/Require.h"
#include "update/UpdateAnswer.h"

#include <QJsonDocument>

#include <algorithm>
#include <cstdint>

using namespace glimmerpane;
using testing::require;

namespace
{

/** Another reader of JSON as the judge; it refuses some of what ours takes, deep nesting say. */
void agreesWithQt(const UpdateInfo &info, const QByteArray &json)
{
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (document.isObject()) {
        const auto member = [&](QLatin1StringView name) { return document[name]; };
        require(member(QLatin1StringView("lastAppVersion")) == info.lastAppVersion
                    && member(QLatin1StringView("downloadUrl")) == info.downloadUrl
                    && member(QLatin1StringView("canUpdate")) == info.canUpdate,
                "both readers see the same answer");
    }
}

/** A terminal obeys control characters, and a log has one line for each failure. */
void isOneShortLine(const QString &text)
{
    require(!text.isEmpty() && text.size() <= 100, "an error's text is short");
    require(std::ranges::all_of(text, [](QChar character) { return character.isPrint(); }),
            "an error's text is one line without control characters");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray json = QByteArrayView(data, qsizetype(size)).toByteArray();
    if (const auto info = updateInfoFromJson(json)) {
        agreesWithQt(*info, json);
    } else {
        isOneShortLine(info.error().text);
        isOneShortLine(info.error().log);
    }
    return 0;
}
