// SPDX-License-Identifier: MIT
#include "storage/RestoreTokenFile.h"

#include <QtConcurrent>

#include <utility>

namespace glimmerpane
{

RestoreTokenFile::RestoreTokenFile(SettingsFile file)
    : file_(std::move(file))
    , token_(QString::fromUtf8(file_.read().value_or(QByteArray())))
{
    thread_.setMaxThreadCount(1);
}

QString RestoreTokenFile::load()
{
    return token_;
}

void RestoreTokenFile::save(const QString &token)
{
    if (std::exchange(token_, token) != token) {
        thread_.start([file = file_, bytes = token.toUtf8()] { file.write(bytes); });
    }
}

} // namespace glimmerpane
