// SPDX-License-Identifier: MIT
#include "rig/ChildProcess.h"

#include "rig/WaitFor.h"

#include <QFile>

#include <csignal>
#include <sys/prctl.h>

namespace glimmerpane::testing
{

namespace
{

QString pathOf(const FileDescriptor &memoryFile)
{
    return QStringLiteral("/proc/self/fd/%1").arg(memoryFile.get());
}

/** Runs in the child between fork and exec: nothing here may allocate or lock. */
void prepare(pid_t parent)
{
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (getppid() != parent) {
        _exit(127);
    }
    // Signals blocked in the parent would stay blocked in the program.
    sigset_t none;
    sigemptyset(&none);
    pthread_sigmask(SIG_SETMASK, &none, nullptr);
}

} // namespace

QByteArray contentOf(const FileDescriptor &memoryFile)
{
    QFile file(pathOf(memoryFile));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

Result<ChildProcess> ChildProcess::start(const Options &options)
{
    ChildProcess child;
    QProcess &process = *child.process_;
    process.setProcessEnvironment(options.environment);
    // A file takes everything without a reader; a pipe would fill up.
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setStandardOutputFile(pathOf(child.output_));
    process.setChildProcessModifier([parent = getpid()] { prepare(parent); });
    process.start(options.program, options.arguments);
    if (!process.waitForStarted(-1)) {
        return failure(QStringLiteral("%1: %2").arg(options.program, process.errorString()));
    }
    return child;
}

bool ChildProcess::isRunning()
{
    // Without an event loop QProcess learns of the end only when it is asked to wait.
    return !process_->waitForFinished(0) && process_->state() == QProcess::Running;
}

std::optional<int> ChildProcess::exitCode()
{
    if (isRunning()) {
        return std::nullopt;
    }
    return process_->exitStatus() == QProcess::NormalExit ? process_->exitCode() : -1;
}

bool ChildProcess::waitForEnd(std::chrono::milliseconds limit)
{
    return waitFor([this] { return !isRunning(); }, limit);
}

void ChildProcess::sendSignal(int signal)
{
    if (isRunning()) {
        ::kill(pid(), signal);
    }
}

void ChildProcess::terminate()
{
    constexpr int limit = 5000; // milliseconds
    if (process_ && isRunning()) {
        process_->terminate();
        if (!process_->waitForFinished(limit)) {
            kill();
        }
    }
}

void ChildProcess::kill()
{
    process_->kill();
    process_->waitForFinished(-1);
}

} // namespace glimmerpane::testing
