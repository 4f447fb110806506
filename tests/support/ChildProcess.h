// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/Result.h"

#include <QProcessEnvironment>
#include <QStringList>

#include <chrono>
#include <optional>
#include <sys/types.h>

namespace glimmerpane::testing
{

/** Owns a file descriptor. */
class FileDescriptor
{
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int descriptor)
        : descriptor_(descriptor)
    {
    }
    FileDescriptor(FileDescriptor &&other) noexcept
        : descriptor_(other.release())
    {
    }
    FileDescriptor &operator=(FileDescriptor &&other) noexcept;
    FileDescriptor(const FileDescriptor &) = delete;
    FileDescriptor &operator=(const FileDescriptor &) = delete;
    ~FileDescriptor() { reset(); }

    int get() const { return descriptor_; }
    bool isValid() const { return descriptor_ >= 0; }
    int release();
    void reset();

private:
    int descriptor_ = -1;
};

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
        int inheritedDescriptor = -1; ///< kept open in the child under the same number
        bool keepOutput = true; ///< collect what it prints; false: it shares our terminal
    };

    /** Returns once the program runs; fails if it cannot be executed. */
    static Result<ChildProcess> start(const Options &options);

    ChildProcess() = default;
    ChildProcess(ChildProcess &&other) noexcept;
    ChildProcess &operator=(ChildProcess &&other) noexcept;
    ChildProcess(const ChildProcess &) = delete;
    ChildProcess &operator=(const ChildProcess &) = delete;
    ~ChildProcess();

    /** 0 when there is none or it has been collected. */
    pid_t pid() const { return pid_; }
    bool isRunning();

    /** The exit code once ended; 128 + the signal's number if a signal ended it. */
    std::optional<int> exitCode();

    /** Handles Qt events meanwhile. Returns whether it ended in time. */
    bool waitForEnd(std::chrono::milliseconds limit);

    /** SIGTERM, and SIGKILL if it has not ended within the limit. Returns after its end. */
    void terminate(std::chrono::milliseconds limit = std::chrono::seconds(5));
    /** SIGKILL. Returns after its end. */
    void kill();
    void sendSignal(int signal);

    /** What it has printed so far on both of its output channels. */
    QByteArray output() const;

private:
    void collect(bool block);

    pid_t pid_ = 0;
    std::optional<int> exitCode_;
    FileDescriptor output_;
};

} // namespace glimmerpane::testing
