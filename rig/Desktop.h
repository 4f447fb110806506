// SPDX-License-Identifier: MIT
#pragma once

#include "rig/ChildProcess.h"
#include "rig/XClient.h"
#include "rig/XvfbServer.h"

#include <QTemporaryDir>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>

namespace glimmerpane::testing
{

/**
 * A private display with a window manager of its own, without any other session's settings,
 * bus or clients. Ends all it started with the object.
 */
class Desktop
{
public:
    struct Options {
        QSize screen{1920, 1080}; ///< root pixels
        bool compositor = false;
        QString bus{}; ///< the address of a session bus; programs have none without
        std::stop_token stop{};
    };

    /** Returns once the window manager and the compositor, if wanted, are at work. */
    static Result<std::unique_ptr<Desktop>> start(const Options &options);

    const XClient &client() const { return client_; }
    XvfbServer &server() { return server_; }
    QString displayName() const { return server_.displayName(); }
    QSize screenSize() const { return client_.rootSize(); }

    /** For programs on this display; settings go to a folder that is removed with the object. */
    QProcessEnvironment environment() const;

    /** Whether the condition came true; gives up at the limit and when asked to stop. */
    bool waitFor(const std::function<bool()> &condition, std::chrono::milliseconds limit) const;
    /**
     * Milliseconds from the beginning until the condition holds, which is looked at without a
     * pause; nothing if it does not within ten seconds.
     */
    std::optional<double> timeUntil(const std::function<bool()> &condition,
                                    std::chrono::steady_clock::time_point begin) const;
    /** Lets time pass on the display; false when asked to stop. */
    bool rest(std::chrono::milliseconds time) const;
    bool stopRequested() const { return stop_.stop_requested(); }

private:
    Desktop(XvfbServer server, XClient client, const Options &options);
    Result<void> startHelpers(bool compositor);

    QTemporaryDir folder_;
    XvfbServer server_;
    XClient client_;
    std::vector<ChildProcess> helpers_;
    QString bus_;
    std::stop_token stop_;
};

} // namespace glimmerpane::testing
