// SPDX-License-Identifier: MIT
#include "tests/support/ChildProcess.h"

#include "tests/support/WaitFor.h"

#include <QStandardPaths>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace glimmerpane::testing
{

namespace
{

QString systemError()
{
    return QString::fromLocal8Bit(std::strerror(errno));
}

/** The zero-terminated array that execve() wants; points into the strings it owns. */
class CStrings
{
public:
    explicit CStrings(const QStringList &strings)
    {
        for (const QString &string : strings) {
            bytes_.push_back(string.toLocal8Bit());
        }
        for (QByteArray &string : bytes_) {
            pointers_.push_back(string.data());
        }
        pointers_.push_back(nullptr);
    }
    char *const *data() const { return pointers_.data(); }

private:
    std::vector<QByteArray> bytes_;
    std::vector<char *> pointers_;
};

struct Launch {
    const char *path;
    char *const *arguments;
    char *const *environment;
    int inherited;
    int output;
    int errors; ///< receives errno if the program cannot be executed
    pid_t parent;
};

/** Runs in the child between fork and exec: nothing here may allocate or lock. */
[[noreturn]] void execute(const Launch &launch)
{
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (getppid() != launch.parent) {
        _exit(127);
    }
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    signal(SIGPIPE, SIG_DFL);
    if (launch.output >= 0) {
        dup2(launch.output, STDOUT_FILENO);
        dup2(launch.output, STDERR_FILENO);
    }
    if (launch.inherited >= 0) {
        fcntl(launch.inherited, F_SETFD, 0);
    }
    execve(launch.path, launch.arguments, launch.environment);
    const int error = errno;
    [[maybe_unused]] const auto written = write(launch.errors, &error, sizeof error);
    _exit(127);
}

QString executablePath(const QString &program)
{
    return program.contains(u'/') ? program : QStandardPaths::findExecutable(program);
}

} // namespace

FileDescriptor &FileDescriptor::operator=(FileDescriptor &&other) noexcept
{
    if (this != &other) {
        reset();
        descriptor_ = other.release();
    }
    return *this;
}

int FileDescriptor::release()
{
    return std::exchange(descriptor_, -1);
}

void FileDescriptor::reset()
{
    if (descriptor_ >= 0) {
        close(descriptor_);
    }
    descriptor_ = -1;
}

Result<ChildProcess> ChildProcess::start(const Options &options)
{
    const QString path = executablePath(options.program);
    if (path.isEmpty()) {
        return failure(QStringLiteral("%1 is not installed").arg(options.program));
    }
    std::array<int, 2> pipeEnds{};
    if (pipe2(pipeEnds.data(), O_CLOEXEC) != 0) {
        return failure(QStringLiteral("pipe: %1").arg(systemError()));
    }
    const FileDescriptor readEnd(pipeEnds[0]);
    FileDescriptor writeEnd(pipeEnds[1]);

    ChildProcess child;
    if (options.keepOutput) {
        child.output_ = FileDescriptor(memfd_create("output", MFD_CLOEXEC));
    }
    const QByteArray file = path.toLocal8Bit();
    const CStrings arguments(QStringList(path) + options.arguments);
    const CStrings environment(options.environment.toStringList());
    const Launch launch{.path = file.constData(),
                        .arguments = arguments.data(),
                        .environment = environment.data(),
                        .inherited = options.inheritedDescriptor,
                        .output = child.output_.get(),
                        .errors = writeEnd.get(),
                        .parent = getpid()};
    child.pid_ = fork();
    if (child.pid_ < 0) {
        child.pid_ = 0;
        return failure(QStringLiteral("fork: %1").arg(systemError()));
    }
    if (child.pid_ == 0) {
        execute(launch);
    }
    writeEnd.reset();
    int error = 0;
    if (read(readEnd.get(), &error, sizeof error) > 0) {
        return failure(
            QStringLiteral("%1: %2").arg(path, QString::fromLocal8Bit(std::strerror(error))));
    }
    return child;
}

ChildProcess::ChildProcess(ChildProcess &&other) noexcept
    : pid_(std::exchange(other.pid_, 0))
    , exitCode_(other.exitCode_)
    , output_(std::move(other.output_))
{
}

ChildProcess &ChildProcess::operator=(ChildProcess &&other) noexcept
{
    if (this != &other) {
        terminate();
        pid_ = std::exchange(other.pid_, 0);
        exitCode_ = other.exitCode_;
        output_ = std::move(other.output_);
    }
    return *this;
}

ChildProcess::~ChildProcess()
{
    terminate();
}

void ChildProcess::collect(bool block)
{
    int status = 0;
    if (pid_ == 0) {
        return;
    }
    pid_t ended = -1;
    do {
        ended = waitpid(pid_, &status, block ? 0 : WNOHANG);
    } while (ended < 0 && errno == EINTR);
    if (ended == 0) {
        return;
    }
    pid_ = 0;
    if (ended < 0) {
        exitCode_ = 127;
    } else {
        exitCode_ = WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
    }
}

bool ChildProcess::isRunning()
{
    collect(false);
    return pid_ != 0;
}

std::optional<int> ChildProcess::exitCode()
{
    collect(false);
    return pid_ == 0 ? exitCode_ : std::nullopt;
}

bool ChildProcess::waitForEnd(std::chrono::milliseconds limit)
{
    return waitFor([this] { return !isRunning(); }, limit);
}

void ChildProcess::sendSignal(int signal)
{
    if (isRunning()) {
        ::kill(pid_, signal);
    }
}

void ChildProcess::terminate(std::chrono::milliseconds limit)
{
    sendSignal(SIGTERM);
    if (!waitForEnd(limit)) {
        kill();
    }
}

void ChildProcess::kill()
{
    sendSignal(SIGKILL);
    collect(true);
}

QByteArray ChildProcess::output() const
{
    QByteArray text;
    std::array<char, 4096> block{};
    ssize_t count = 0;
    while (output_.isValid()
           && (count = pread(output_.get(), block.data(), block.size(), text.size())) > 0) {
        text.append(block.data(), count);
    }
    return text;
}

} // namespace glimmerpane::testing
