// SPDX-License-Identifier: MIT
#include "app/AreaOptions.h"

#include <QCommandLineParser>

namespace glimmerpane
{

namespace
{

std::optional<QString> valueOf(const QCommandLineParser &parser, const QString &option)
{
    return parser.isSet(option) ? std::optional(parser.value(option)) : std::nullopt;
}

} // namespace

void addAreaOptions(QCommandLineParser &parser)
{
    for (const char *flag : {"areas", "json"}) {
        parser.addOption(QCommandLineOption(QLatin1String(flag)));
    }
    for (const char *option : {"size", "use", "save-as", "forget"}) {
        parser.addOption({QLatin1String(option), {}, QStringLiteral("value")});
    }
}

std::expected<AreaOptions, QString> areaOptions(const QCommandLineParser &parser)
{
    AreaOptions options{.use = valueOf(parser, QStringLiteral("use")),
                        .saveAs = valueOf(parser, QStringLiteral("save-as")),
                        .forget = valueOf(parser, QStringLiteral("forget")),
                        .size = std::nullopt,
                        .list = parser.isSet(QStringLiteral("areas")),
                        .json = parser.isSet(QStringLiteral("json"))};
    if (const auto text = valueOf(parser, QStringLiteral("size"))) {
        options.size = areaSizeFromText(*text);
        if (!options.size) {
            return std::unexpected(
                AreaOptions::tr("'%1' is not a size. Use WIDTHxHEIGHT in pixels, or a ratio such "
                                "as 16:9.")
                    .arg(*text));
        }
    }
    if (options.use && parser.isSet(QStringLiteral("area"))) {
        return std::unexpected(
            AreaOptions::tr("Only one of --area and --use can be used at a time."));
    }
    if (options.list && parser.isSet(QStringLiteral("status"))) {
        return std::unexpected(
            AreaOptions::tr("Only one of --areas and --status can be used at a time."));
    }
    if (options.json && !options.list) {
        return std::unexpected(AreaOptions::tr("--json needs --areas."));
    }
    return options;
}

} // namespace glimmerpane
