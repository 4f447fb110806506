// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <QString>

#include <optional>

namespace glimmerpane
{

/**
 * A byte string under one key of an INI file. Any thread, but only one at a time. A file that is
 * far too large, or not a regular file, is neither read nor written, with a line on standard error.
 */
struct SettingsFile {
    static constexpr qint64 largest = 16 * 1024; ///< bytes; ours takes about a hundred

    QString path;
    QString key;

    /** Null if there is no byte string. */
    std::optional<QByteArray> read() const;

    /**
     * On return, the value is on disk or the file is unchanged. Blocks while the disk does, and up
     * to a second while another process writes the file.
     */
    void write(const QByteArray &value) const;

    Q_DECLARE_TR_FUNCTIONS(glimmerpane::SettingsFile)
};

// The current user's, all in one file in the XDG configuration folder.

/** The capture area. */
SettingsFile captureFrameFile();
/** The desktop's token for recording the screen again. */
SettingsFile restoreTokenFile();
/** Whether a frame is to be shown around the shared area. */
SettingsFile areaFrameFile();

} // namespace glimmerpane
