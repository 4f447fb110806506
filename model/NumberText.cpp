// SPDX-License-Identifier: MIT
#include "model/NumberText.h"

#include <QByteArray>

#include <clocale>
#include <cstdlib>
#include <memory>
#include <type_traits>

namespace glimmerpane
{

namespace
{

double toDouble(const char *text, char **end)
{
    using Locale = std::unique_ptr<std::remove_pointer_t<locale_t>, decltype(&freelocale)>;
    const Locale cLocale(newlocale(LC_ALL_MASK, "C", nullptr), &freelocale);
    return strtod_l(text, end, cLocale.get());
}

} // namespace

std::optional<double> numberFromText(QStringView text)
{
    const QByteArray bytes = text.toUtf8();
    // strtod() would skip leading white space.
    if (bytes.isEmpty() || QByteArrayView(" \t\n\v\f\r").contains(bytes.front())) {
        return std::nullopt;
    }
    char *end = nullptr;
    const double number = toDouble(bytes.constData(), &end);
    if (end != bytes.constData() + bytes.size()) {
        return std::nullopt;
    }
    return number;
}

} // namespace glimmerpane
