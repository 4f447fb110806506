// SPDX-License-Identifier: MIT
#include "app/LaunchOptions.h"
#include "model/NumberText.h"
#include "tests/fuzz/Require.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>

using namespace glimmerpane;
using testing::require;

namespace
{

bool isSame(double one, double other)
{
    using Bits = std::uint64_t; // -0.0 equals 0.0
    return std::bit_cast<Bits>(one) == std::bit_cast<Bits>(other)
        || (std::isnan(one) && std::isnan(other));
}

/** Another reader of numbers as the judge; of decimal ones, because it knows no "0x". */
void agreesWithCharconv(const QString &text, std::optional<double> number)
{
    const bool hasPlus = text.startsWith(u'+') && !text.startsWith(u"+-");
    const QByteArray bytes = text.sliced(hasPlus ? 1 : 0).toUtf8();
    double other = 0;
    const auto [end, error] = std::from_chars(bytes.begin(), bytes.end(), other);
    if (error == std::errc() && end == bytes.end()) {
        require(number && isSame(*number, other), "both readers see the same number");
    } else if (number && error != std::errc::result_out_of_range) {
        require(text.contains(u'x', Qt::CaseInsensitive), "what is no number is refused");
    }
}

bool isNumber(const QString &text)
{
    const auto number = numberFromText(text);
    require(!number || !text.front().isSpace(), "a number does not begin with white space");
    agreesWithCharconv(text, number);
    return number.has_value();
}

bool isOneLine(const QString &text)
{
    return std::ranges::none_of(text, [](QChar c) { return c.isSpace() && c != u' '; });
}

/** Whether an area was taken. */
bool takesArea(const QStringList &arguments)
{
    const auto options = launchOptions(arguments);
    if (!options) {
        require(!options.error().isEmpty() && isOneLine(options.error()), "an error is one line");
        return false;
    }
    require(!options->area || std::ranges::all_of(*options->area, isNumber),
            "an area is four numbers");
    return options->area.has_value();
}

} // namespace

/** The input is texts with "|" in between: four of an area, or the arguments of a command line. */
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    QStringList texts = QString::fromUtf8(QByteArrayView(data, qsizetype(size))).split(u'|');
    takesArea(texts);
    texts.resize(4);
    const bool areNumbers = std::ranges::count_if(texts, isNumber) == 4;
    const QString area = QStringLiteral("%1,%2,%3x%4").arg(texts[0], texts[1], texts[2], texts[3]);
    const bool separate = takesArea({QStringLiteral("--area"), area});
    require(separate == takesArea({QStringLiteral("--area=") + area}),
            "an area may be an argument of its own");
    require(separate || !areNumbers, "four numbers are an area");
    return 0;
}
