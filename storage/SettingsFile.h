// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <QString>
#include <QStringList>
#include <QVariant>

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
     * On return, the value is on disk or the file is unchanged; false for the latter. Blocks while
     * the disk does, and up to a second while another process writes the file.
     */
    bool write(const QByteArray &value) const;
    /** The same, but there is no value afterwards. */
    bool remove() const;

    /** The last parts of the keys below this one. Null if the file is not read. */
    std::optional<QStringList> keysBelow() const;

    Q_DECLARE_TR_FUNCTIONS(glimmerpane::SettingsFile)

private:
    bool change(const QVariant &value) const;
};

// The current user's, all in one file in the XDG configuration folder.

/** The capture area. */
SettingsFile captureFrameFile();
/** The desktop's token for recording the screen again. */
SettingsFile restoreTokenFile();
/** The areas that have a name, each under a key below this one. */
SettingsFile namedAreasFile();
/** Whether a frame is to be shown around the shared area. */
SettingsFile areaFrameFile();
/** Whether the desktop is to offer shortcuts. */
SettingsFile shortcutsFile();
/** Whether an icon is to be shown in the tray. */
SettingsFile trayFile();

} // namespace glimmerpane
