// SPDX-License-Identifier: MIT
#include "storage/FrameRepository.h"

#include <QStandardPaths>

#include <utility>

namespace glimmerpane
{

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
        return std::nullopt;
    }
    return captureFrameFromJson(value.toByteArray());
}

void FrameRepository::save(const CaptureFrame &frame)
{
    if (const auto json = toJson(frame)) {
        userDefaults_->setValue(key_, *json);
        userDefaults_->sync();
    }
}

std::unique_ptr<QSettings> standardUserDefaults()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return std::make_unique<QSettings>(folder + QStringLiteral("/glimmerpane/glimmerpane.ini"),
                                       QSettings::IniFormat);
}

} // namespace glimmerpane
