// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FileDescriptor.h"
#include "rig/Result.h"

#include <QProcess>

#include <chrono>
#include <memory>
#include <optional>
#include <sys/mman.h>
#include <utility>

namespace glimmerpane::testing
{

/** The content of a file created by memfd_create(). */
QByteArray contentOf(const FileDescriptor &memoryFile);

/**
 * One started program. The destructor ends exactly this process, by its id, and collects it, so
 * that none is left behind. The kernel ends it too if the starting thread dies first.
 */
class ChildProcess
{
public:
    struct Options {
        QString program; ///< a path, or a name that is looked up in PATH
        QStringList arguments{};
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    };

    /** Returns once the program runs; fails if it cannot be executed. */
    static Result<ChildProcess> start(const Options &options);

    ChildProcess() = default;
    ChildProcess(ChildProcess &&) = default;
    ChildProcess &operator=(ChildProcess &&other) noexcept
    {
        std::swap(process_, other.process_);
        std::swap(output_, other.output_);
        return *this;
    }
    ~ChildProcess() { terminate(); }

    /** 0 if there is no process or it has been collected. */
    pid_t pid() const { return static_cast<pid_t>(process_->processId()); }
    bool isRunning();

    /** The exit code once ended; -1 if a signal ended it. */
    std::optional<int> exitCode();

    /** Handles Qt events while waiting. Returns whether the process ended in time. */
    bool waitForEnd(std::chrono::milliseconds limit);

    /** Sends SIGTERM, then SIGKILL if that does not help. Returns after the process has ended. */
    void terminate();
    /** Sends SIGKILL. Returns after the process has ended. */
    void kill();
    void sendSignal(int signal);

    /** Everything printed so far to standard output and standard error. */
    QByteArray output() const { return contentOf(output_); }

private:
    std::unique_ptr<QProcess> process_ = std::make_unique<QProcess>();
    FileDescriptor output_{memfd_create("output", MFD_CLOEXEC)};
};

} // namespace glimmerpane::testing
