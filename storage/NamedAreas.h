// SPDX-License-Identifier: MIT
#pragma once

#include "services/CaptureFrame.h"
#include "services/Error.h"
#include "storage/SettingsFile.h"

#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include <expected>
#include <vector>

namespace glimmerpane
{

struct NamedArea {
    QString name;
    CaptureFrame area;
};

/** What is stored under names. */
struct NamedAreaList {
    std::vector<NamedArea> areas; ///< in the order of their names
    QStringList unreadable; ///< names whose area cannot be read
};

/**
 * Areas stored under names, each as JSON under a key of its own, so that programs that store others
 * at the same time lose none. Any thread, but only one at a time; all functions wait for the disk.
 */
class NamedAreas
{
public:
    // The largest number of the longest names takes less than SettingsFile::largest.
    static constexpr qsizetype most = 25;
    static constexpr qsizetype longestName = 60; ///< UTF-16 code units

    /** Everything is stored below the file's key. */
    explicit NamedAreas(SettingsFile file);

    /** Replaces the area of that name, if there is one. */
    std::expected<void, Error> save(const QString &name, const CaptureFrame &area) const;
    std::expected<CaptureFrame, Error> find(const QString &name) const;
    std::expected<void, Error> forget(const QString &name) const;
    std::expected<NamedAreaList, Error> list() const;

    Q_DECLARE_TR_FUNCTIONS(glimmerpane::NamedAreas)

private:
    SettingsFile fileOf(const QString &name) const;
    std::expected<QStringList, Error> names() const;
    std::expected<void, Error> requireName(const QString &name) const;

    const SettingsFile file_;
};

} // namespace glimmerpane
