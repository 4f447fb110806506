// SPDX-License-Identifier: MIT
#include "app/StoredAreas.h"

#include "services/Json.h"
#include "storage/CaptureFrameJson.h"
#include "storage/NamedAreas.h"

#include <QLocale>

namespace glimmerpane
{

namespace
{

/** As --area takes it. */
QString textOf(const CaptureFrame &area)
{
    const auto number
        = [](double value) { return QString::number(value, 'g', QLocale::FloatingPointShortest); };
    return number(area.x) + u',' + number(area.y) + u',' + number(area.width) + u'x'
        + number(area.height);
}

QString jsonOf(const std::vector<NamedArea> &areas)
{
    auto array = nlohmann::ordered_json::array();
    for (const auto &[name, area] : areas) {
        array.push_back(
            {{"name", name.toStdString()},
             {"area",
              {{"x", area.x}, {"y", area.y}, {"width", area.width}, {"height", area.height}}}});
    }
    return QString::fromStdString(array.dump());
}

QString linesOf(const std::vector<NamedArea> &areas)
{
    QStringList lines;
    for (const auto &[name, area] : areas) {
        lines.append(textOf(area) + u' ' + name);
    }
    return lines.join(u'\n');
}

CommandResult list(const NamedAreas &stored, bool asJson)
{
    const auto all = stored.list();
    if (!all) {
        return CommandResult::failure(all.error().text);
    }
    CommandResult result{.exitCode = ExitCode::Succeeded,
                         .output = asJson ? jsonOf(all->areas) : linesOf(all->areas),
                         .error = {}};
    if (!all->unreadable.isEmpty()) {
        result.error = AreaOptions::tr("Left out because they cannot be read: %1")
                           .arg(all->unreadable.join(QStringLiteral(", ")))
                           .simplified();
    }
    return result;
}

} // namespace

CommandResult obeyStored(const AreaOptions &options, const std::optional<CaptureFrame> &current)
{
    const NamedAreas stored(namedAreasFile());
    if (options.saveAs && !current) {
        return CommandResult::failure(
            AreaOptions::tr("No area is stored yet. Set one first, for example with --area."));
    }
    std::expected<void, Error> done;
    if (options.saveAs) {
        done = stored.save(*options.saveAs, *current);
    }
    if (done && options.forget) {
        done = stored.forget(*options.forget);
    }
    if (!done) {
        return CommandResult::failure(done.error().text);
    }
    return options.list ? list(stored, options.json) : CommandResult{};
}

CommandResult obeyStored(const AreaOptions &options)
{
    const auto json = captureFrameFile().read();
    return obeyStored(options, json ? captureFrameFromJson(*json) : std::nullopt);
}

} // namespace glimmerpane
