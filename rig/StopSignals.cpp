// SPDX-License-Identifier: MIT
#include "rig/StopSignals.h"

#include <ctime>

namespace glimmerpane::testing
{

StopSignals::StopSignals()
{
    sigemptyset(&signals_);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        sigaddset(&signals_, signal);
    }
    pthread_sigmask(SIG_BLOCK, &signals_, nullptr);
    watcher_ = std::jthread([this](const std::stop_token &end) {
        constexpr timespec interval{.tv_sec = 0, .tv_nsec = 100'000'000};
        while (!end.stop_requested()) {
            if (sigtimedwait(&signals_, nullptr, &interval) > 0) {
                source_.request_stop();
            }
        }
    });
}

StopSignals::~StopSignals()
{
    watcher_.request_stop();
}

} // namespace glimmerpane::testing
