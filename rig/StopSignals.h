// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <csignal>
#include <stop_token>
#include <thread>

namespace glimmerpane::testing
{

/**
 * Turns SIGINT, SIGTERM and SIGHUP into a request to stop, so that every child process is ended and
 * every temporary folder removed. Create it before any other thread.
 */
class StopSignals
{
public:
    StopSignals();
    ~StopSignals();
    Q_DISABLE_COPY_MOVE(StopSignals)

    std::stop_token token() const { return source_.get_token(); }

private:
    sigset_t signals_{};
    std::stop_source source_;
    std::jthread watcher_;
};

} // namespace glimmerpane::testing
