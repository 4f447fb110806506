// SPDX-License-Identifier: MIT
#include "storage/FrameRepository.h"

#include "storage/CaptureFrameJson.h"

#include "storage/Log.h"
#include <QDir>
#include <QFileInfo>
#include <QLockFile>
#include <QStandardPaths>
#include <QTemporaryFile>

#include <utility>

namespace glimmerpane
{

namespace
{

/**
 * Whether a new settings file could be written beside the old one. QSettings does not notice when
 * the disk is full: it puts what fitted of the new file in the old one's place.
 */
bool hasRoomFor(const QSettings &settings)
{
    const QFileInfo file(settings.fileName());
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
bool isUnlocked(const QSettings &settings)
{
    constexpr int oldest = 100; // milliseconds; one that is held is not taken away, however old
    QLockFile lock(settings.fileName() + QStringLiteral(".lock"));
    lock.setStaleLockTime(oldest);
    return lock.tryLock(10 * oldest);
}

} // namespace

FrameRepository::FrameRepository(std::unique_ptr<QSettings> userDefaults, QString key)
    : userDefaults_(std::move(userDefaults))
    , key_(std::move(key))
{
    // The new file is complete before it takes the old one's place, or there is no new file.
    userDefaults_->setAtomicSyncRequired(true);
}

std::optional<CaptureFrame> FrameRepository::load()
{
    const QVariant value = userDefaults_->value(key_);
    if (value.typeId() != QMetaType::QByteArray) {
        qCInfo(storageLog) << "no area in" << userDefaults_->fileName();
        return std::nullopt;
    }
    return captureFrameFromJson(value.toByteArray());
}

void FrameRepository::save(const CaptureFrame &frame)
{
    const auto json = toJson(frame);
    if (json && hasRoomFor(*userDefaults_) && isUnlocked(*userDefaults_)) {
        userDefaults_->setValue(key_, *json);
        userDefaults_->sync();
        qCInfo(storageLog, "saves %s", json->constData());
    } else {
        qCInfo(storageLog) << "cannot save an area in" << userDefaults_->fileName();
    }
}

std::unique_ptr<QSettings> standardUserDefaults()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return std::make_unique<QSettings>(folder + QStringLiteral("/glimmerpane/glimmerpane.ini"),
                                       QSettings::IniFormat);
}

} // namespace glimmerpane
