// SPDX-License-Identifier: MIT
#include "storage/SettingsFile.h"

#include "storage/Log.h"
#include <QDir>
#include <QFileInfo>
#include <QLockFile>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryFile>

#include <cstdio>

namespace glimmerpane
{

namespace
{

/**
 * Whether QSettings can safely read it: each level of nested values takes up to 500 bytes of stack
 * but only 8 bytes of the file.
 */
bool isHarmless(const QFileInfo &file)
{
    if (!file.exists() || (file.isFile() && file.size() <= SettingsFile::largest)) {
        return true;
    }
    const QString text = SettingsFile::tr(
        "Settings are neither read from nor saved to %1: it is too large or not a regular file.");
    std::fprintf(stderr, "glimmerpane: %s\n", qPrintable(text.arg(file.filePath())));
    return false;
}

/**
 * Whether a new settings file can be written next to the old one. QSettings does not notice a full
 * disk: it would replace the old file with a truncated new one.
 */
bool hasRoomFor(const QFileInfo &file)
{
    const QString path = file.exists() ? file.canonicalFilePath() : file.filePath();
    QDir().mkpath(QFileInfo(path).path());
    QTemporaryFile trial(path);
    const QByteArray bytes(file.size() + 4096, ' ');
    return trial.open() && trial.write(bytes) == bytes.size() && trial.flush();
}

/**
 * Whether QSettings will get its lock. It would wait forever for a lock file left by a process that
 * was killed before writing its name into it, so such a lock is removed here.
 */
bool isUnlocked(const QString &path)
{
    constexpr int oldest = 100; // milliseconds; a lock still held is never removed, however old
    QLockFile lock(path + QStringLiteral(".lock"));
    lock.setStaleLockTime(oldest);
    return lock.tryLock(10 * oldest);
}

QString settingsPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
        + QStringLiteral("/glimmerpane/glimmerpane.ini");
}

} // namespace

std::optional<QByteArray> SettingsFile::read() const
{
    const QVariant value = isHarmless(QFileInfo(path))
        ? QSettings(path, QSettings::IniFormat).value(key)
        : QVariant();
    if (value.typeId() != QMetaType::QByteArray) {
        qCInfo(storageLog) << "no" << key << "stored in" << path;
        return std::nullopt;
    }
    return value.toByteArray();
}

bool SettingsFile::write(const QByteArray &value) const
{
    return change(value);
}

bool SettingsFile::remove() const
{
    return change({});
}

std::optional<QStringList> SettingsFile::keysBelow() const
{
    if (!isHarmless(QFileInfo(path))) {
        return std::nullopt;
    }
    QSettings settings(path, QSettings::IniFormat);
    settings.beginGroup(key);
    return settings.childKeys();
}

bool SettingsFile::change(const QVariant &value) const
{
    const QFileInfo file(path);
    if (!isHarmless(file) || !hasRoomFor(file) || !isUnlocked(path)) {
        qCInfo(storageLog) << "cannot save" << key << "in" << path;
        return false;
    }
    QSettings settings(path, QSettings::IniFormat);
    // The new file either replaces the old one when complete, or does not appear at all.
    settings.setAtomicSyncRequired(true);
    if (value.isValid()) {
        settings.setValue(key, value);
    } else {
        settings.remove(key);
    }
    settings.sync();
    qCInfo(storageLog) << "saving" << key << "in" << path;
    return settings.status() == QSettings::NoError;
}

SettingsFile captureFrameFile()
{
    return {.path = settingsPath(), .key = QStringLiteral("captureFrame")};
}

SettingsFile restoreTokenFile()
{
    return {.path = settingsPath(), .key = QStringLiteral("screenCastToken")};
}

SettingsFile namedAreasFile()
{
    return {.path = settingsPath(), .key = QStringLiteral("areas")};
}

SettingsFile areaFrameFile()
{
    return {.path = settingsPath(), .key = QStringLiteral("areaFrame")};
}

SettingsFile shortcutsFile()
{
    return {.path = settingsPath(), .key = QStringLiteral("shortcuts")};
}

SettingsFile trayFile()
{
    return {.path = settingsPath(), .key = QStringLiteral("tray")};
}

} // namespace glimmerpane
