// SPDX-License-Identifier: MIT
#include "storage/NamedAreas.h"

#include "storage/CaptureFrameJson.h"

#include <QFileInfo>
#include <QUrl>

#include <algorithm>
#include <iterator>
#include <utility>

namespace glimmerpane
{

namespace
{

std::unexpected<Error> failure(const QString &text)
{
    return std::unexpected(Error{.text = text, .log = {}});
}

/** A slash would begin another part of the key. */
QString keyOf(QString name)
{
    return name.replace(u'%', QStringLiteral("%25")).replace(u'/', QStringLiteral("%2F"));
}

QString nameOf(const QString &key)
{
    return QUrl::fromPercentEncoding(key.toUtf8());
}

/** A separator of lines or paragraphs would break the list of areas like a control character. */
bool isOdd(QChar character)
{
    const auto category = character.category();
    return category == QChar::Other_Control || category == QChar::Separator_Line
        || category == QChar::Separator_Paragraph || character == QChar::ReplacementCharacter;
}

std::expected<void, Error> checkName(const QString &name)
{
    if (name.trimmed().isEmpty()) {
        return failure(NamedAreas::tr("The area's name is empty."));
    }
    if (name.size() > NamedAreas::longestName) {
        return failure(NamedAreas::tr("The area's name is too long. It can have %n characters.",
                                      nullptr, NamedAreas::longestName));
    }
    if (!name.isValidUtf16() || std::ranges::any_of(name, isOdd)) {
        return failure(NamedAreas::tr("'%1' cannot be an area's name: it contains a control "
                                      "character or is not valid text.")
                           .arg(name));
    }
    return {};
}

/** QSettings writes up to six bytes for a UTF-16 unit, and two for a quotation mark. */
qint64 longestEntry(const QString &key, const QByteArray &value)
{
    return 6 * key.size() + 2 * value.size() + 64;
}

} // namespace

NamedAreas::NamedAreas(SettingsFile file)
    : file_(std::move(file))
{
}

SettingsFile NamedAreas::fileOf(const QString &name) const
{
    return {.path = file_.path, .key = file_.key + u'/' + keyOf(name)};
}

std::expected<QStringList, Error> NamedAreas::names() const
{
    const auto keys = file_.keysBelow();
    if (!keys) {
        return failure(tr("The areas cannot be read from %1.").arg(file_.path));
    }
    QStringList names;
    std::ranges::transform(*keys, std::back_inserter(names), nameOf);
    names.sort();
    return names;
}

std::expected<void, Error> NamedAreas::requireName(const QString &name) const
{
    if (auto valid = checkName(name); !valid) {
        return valid;
    }
    const auto all = names();
    if (!all) {
        return std::unexpected(all.error());
    }
    return all->contains(name) ? std::expected<void, Error>()
                               : failure(tr("There is no area named '%1'.").arg(name));
}

std::expected<void, Error> NamedAreas::save(const QString &name, const CaptureFrame &area) const
{
    if (auto valid = checkName(name); !valid) {
        return valid;
    }
    const auto json = toJson(area);
    if (!json) {
        return failure(tr("The area cannot be stored: its numbers must be finite."));
    }
    const auto all = names();
    if (!all) {
        return std::unexpected(all.error());
    }
    if (!all->contains(name) && all->size() >= most) {
        return failure(tr("There are already %n areas with names. Forget one first.", nullptr,
                          static_cast<int>(all->size())));
    }
    const SettingsFile entry = fileOf(name);
    if (QFileInfo(entry.path).size() + longestEntry(entry.key, *json) > SettingsFile::largest) {
        return failure(tr("There is no room for another area in %1.").arg(entry.path));
    }
    return entry.write(*json) ? std::expected<void, Error>()
                              : failure(tr("The area cannot be stored in %1.").arg(entry.path));
}

std::expected<CaptureFrame, Error> NamedAreas::find(const QString &name) const
{
    if (const auto known = requireName(name); !known) {
        return std::unexpected(known.error());
    }
    const auto json = fileOf(name).read();
    const auto area = json ? captureFrameFromJson(*json) : std::nullopt;
    if (!area) {
        return failure(tr("The area named '%1' cannot be read from %2.").arg(name, file_.path));
    }
    return *area;
}

std::expected<void, Error> NamedAreas::forget(const QString &name) const
{
    if (auto known = requireName(name); !known) {
        return known;
    }
    return fileOf(name).remove()
        ? std::expected<void, Error>()
        : failure(tr("The area cannot be removed from %1.").arg(file_.path));
}

std::expected<NamedAreaList, Error> NamedAreas::list() const
{
    const auto all = names();
    if (!all) {
        return std::unexpected(all.error());
    }
    NamedAreaList list;
    for (const QString &name : *all) {
        const auto json = fileOf(name).read();
        if (const auto area = json ? captureFrameFromJson(*json) : std::nullopt) {
            list.areas.push_back({.name = name, .area = *area});
        } else {
            list.unreadable.append(name);
        }
    }
    return list;
}

} // namespace glimmerpane
