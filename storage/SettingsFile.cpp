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
 * Whether QSettings may read it: each level of nested values takes up to 500 bytes of the stack and
 * only 8 of the file.
 */
bool isHarmless(const QFileInfo &file)
{
    if (!file.exists() || (file.isFile() && file.size() <= SettingsFile::largest)) {
        return true;
    }
    const QString text = SettingsFile::tr(
        "Settings are neither read from %1 nor saved there: it is too large, or no file.");
    std::fprintf(stderr, "glimmerpane: %s\n", qPrintable(text.arg(file.filePath())));
    return false;
}

/**
 * Whether a new settings file could be written beside the old one. QSettings does not notice when
 * the disk is full: it puts what fitted of the new file in the old one's place.
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
 * Whether QSettings gets its lock. It would wait without end for one that a process left when it
 * was killed before it had written its name in it; so such a lock is taken away here.
 */
bool isUnlocked(const QString &path)
{
    constexpr int oldest = 100; // milliseconds; one that is held is not taken away, however old
    QLockFile lock(path + QStringLiteral(".lock"));
    lock.setStaleLockTime(oldest);
    return lock.tryLock(10 * oldest);
}

} // namespace

std::optional<QByteArray> SettingsFile::read() const
{
    const QVariant value = isHarmless(QFileInfo(path))
        ? QSettings(path, QSettings::IniFormat).value(key)
        : QVariant();
    if (value.typeId() != QMetaType::QByteArray) {
        qCInfo(storageLog) << "no area in" << path;
        return std::nullopt;
    }
    return value.toByteArray();
}

void SettingsFile::write(const QByteArray &value) const
{
    const QFileInfo file(path);
    if (!isHarmless(file) || !hasRoomFor(file) || !isUnlocked(path)) {
        qCInfo(storageLog) << "cannot save an area in" << path;
        return;
    }
    QSettings settings(path, QSettings::IniFormat);
    // The new file is complete before it takes the old one's place, or there is no new file.
    settings.setAtomicSyncRequired(true);
    settings.setValue(key, value);
    settings.sync();
    qCInfo(storageLog, "saves %s", value.constData());
}

SettingsFile captureFrameFile()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return {.path = folder + QStringLiteral("/glimmerpane/glimmerpane.ini"),
            .key = QStringLiteral("captureFrame")};
}

} // namespace glimmerpane
