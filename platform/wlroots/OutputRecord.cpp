// SPDX-License-Identifier: MIT
#include "platform/wlroots/OutputRecord.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/file.h>
#include <utility>

namespace glimmerpane::wlroots
{

namespace
{

/** How the names of this sway's notes begin; its socket's name contains its process. */
QString prefix()
{
    return QStringLiteral("glimmerpane-") + QFileInfo(qEnvironmentVariable("SWAYSOCK")).fileName()
        + u'-';
}

/** Open and locked; empty if another program holds it or it cannot be opened. */
std::optional<FileDescriptor> lock(const QString &path, int flags)
{
    constexpr int ownersOnly = 0600;
    FileDescriptor file(
        open(QFile::encodeName(path).constData(), O_RDWR | O_CLOEXEC | flags, ownersOnly));
    const bool isLocked = file.get() >= 0 && flock(file.get(), LOCK_EX | LOCK_NB) == 0;
    return isLocked ? std::optional(std::move(file)) : std::nullopt;
}

/** Null without one: others could write into any other folder. */
std::optional<QDir> folder()
{
    const QString path = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return path.isEmpty() ? std::nullopt : std::optional(QDir(path));
}

} // namespace

std::optional<OutputRecord> OutputRecord::hold(const QString &output)
{
    const auto notes = folder();
    if (!notes) {
        return std::nullopt;
    }
    const QString path = notes->filePath(prefix() + output);
    auto file = lock(path, O_CREAT);
    return file ? std::optional(OutputRecord(path, std::move(*file))) : std::nullopt;
}

QStringList OutputRecord::abandoned()
{
    const auto notes = folder();
    QStringList outputs;
    if (!notes) {
        return outputs;
    }
    for (const QString &name : notes->entryList({prefix() + u'*'}, QDir::Files)) {
        if (lock(notes->filePath(name), 0)) {
            outputs.append(name.mid(prefix().size()));
        }
    }
    return outputs;
}

OutputRecord::OutputRecord(QString path, FileDescriptor file)
    : path_(std::move(path))
    , file_(std::move(file))
{
}

void OutputRecord::erase() const
{
    QFile::remove(path_);
}

} // namespace glimmerpane::wlroots
