// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <QString>

#include <optional>

namespace glimmerpane
{

/**
 * A byte string under one key of an INI file. Any thread, but one at a time. What is far too large
 * for that, or no file, is neither read nor written; a line on standard error says so.
 */
struct SettingsFile {
    static constexpr qint64 largest = 16 * 1024; ///< bytes of the whole file; ours has a hundred

    QString path;
    QString key;

    /** Nothing if there is no byte string. */
    std::optional<QByteArray> read() const;

    /**
     * On the disk when it returns, or the file is as it was. Blocks while the disk does, and up to
     * a second while another process writes the file.
     */
    void write(const QByteArray &value) const;

    Q_DECLARE_TR_FUNCTIONS(glimmerpane::SettingsFile)
};

/** Of the current user, in the XDG configuration folder. */
SettingsFile captureFrameFile();

} // namespace glimmerpane
