// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FileDescriptor.h"

#include <QStringList>

#include <optional>

namespace glimmerpane::wlroots
{

/**
 * A note in $XDG_RUNTIME_DIR that an output of the running sway was made by this program. It stays
 * after a crash, but only a running program holds it.
 */
class OutputRecord
{
public:
    /** Writes the note, or takes over one that nobody holds; null if that is not possible. */
    static std::optional<OutputRecord> hold(const QString &output);

    /** The outputs with a note that nobody holds. */
    static QStringList abandoned();

    /** Removes the note, once the output is gone. */
    void erase() const;

private:
    OutputRecord(QString path, FileDescriptor file);

    QString path_;
    FileDescriptor file_; ///< locked while it is open
};

} // namespace glimmerpane::wlroots
