// SPDX-License-Identifier: MIT
#pragma once

#include "services/RestoreTokenStore.h"
#include "storage/SettingsFile.h"

#include <QThreadPool>

namespace glimmerpane
{

/** Stores the token in a settings file, which is written on a separate thread. */
class RestoreTokenFile : public RestoreTokenStore
{
public:
    explicit RestoreTokenFile(SettingsFile file);

    QString load() override;
    void save(const QString &token) override;

private:
    const SettingsFile file_;
    QString token_;
    QThreadPool thread_; ///< the only thread that writes; its destructor waits
};

} // namespace glimmerpane
