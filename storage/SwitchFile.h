// SPDX-License-Identifier: MIT
#pragma once

#include "storage/SettingsFile.h"

#include <QFuture>
#include <QThreadPool>

namespace glimmerpane
{

/** Stores whether something is on, in a settings file that is written on a separate thread. */
class SwitchFile
{
public:
    explicit SwitchFile(SettingsFile file);

    /** Off if nothing is stored. */
    bool isOn() const;

    /** Finishes when it is written, or cannot be. */
    QFuture<void> save(bool isOn);

private:
    const SettingsFile file_;
    QThreadPool thread_; ///< the only thread that writes; its destructor waits
};

} // namespace glimmerpane
