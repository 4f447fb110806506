// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace glimmerpane
{

/** A byte string under one key of an INI file. Any thread, but one at a time. */
struct SettingsFile {
    QString path;
    QString key;

    /** Nothing if there is no byte string, or no file that could be ours. */
    std::optional<QByteArray> read() const;

    /**
     * On the disk when it returns, or the file is as it was. Blocks while the disk does, and up to
     * a second while another process writes the file.
     */
    void write(const QByteArray &value) const;
};

/** Of the current user, in the XDG configuration folder. */
SettingsFile captureFrameFile();

} // namespace glimmerpane
