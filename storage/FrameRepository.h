// SPDX-License-Identifier: MIT
#pragma once

#include "services/FrameRepositoryProtocol.h"

#include <QSettings>
#include <QString>

#include <memory>

namespace glimmerpane
{

/** Keeps the capture area as JSON bytes under one key of the user's settings. */
class FrameRepository : public FrameRepositoryProtocol
{
public:
    FrameRepository(std::unique_ptr<QSettings> userDefaults, QString key);

    std::optional<CaptureFrame> load() override;

    /** Written to the disk before it returns, so that a crash right after loses nothing. */
    void save(const CaptureFrame &frame) override;

private:
    const std::unique_ptr<QSettings> userDefaults_;
    const QString key_;
};

/** The settings file of the current user, in the XDG configuration folder. */
std::unique_ptr<QSettings> standardUserDefaults();

} // namespace glimmerpane
