// SPDX-License-Identifier: MIT
#pragma once

#include "services/Error.h"

#include <QFuture>
#include <QPromise>
#include <QThread>
#include <QThreadPool>

#include <expected>
#include <memory>
#include <utility>

namespace glimmerpane
{

/** The thread "captureQueue" of a stream that runs a loop there. Main thread. */
class CaptureThread
{
public:
    /** `background` waits for the thread after finish(). */
    explicit CaptureThread(std::shared_ptr<QThreadPool> background)
        : background_(std::move(background))
    {
    }

    /**
     * Calls `open` on the thread; it returns a pointer to the loop, or an error, which is the
     * result. Then calls the loop's run() there. Once.
     */
    template<typename Open>
    QFuture<std::expected<void, Error>> start(Open open)
    {
        using Result = std::expected<void, Error>;
        QPromise<Result> outcome;
        auto started = outcome.future();
        outcome.start();
        thread_.reset(
            QThread::create([open = std::move(open), outcome = std::move(outcome)]() mutable {
                const auto loop = open();
                outcome.addResult(loop ? Result() : std::unexpected(loop.error()));
                outcome.finish();
                if (loop) {
                    (*loop)->run();
                }
            }));
        thread_->setObjectName(QStringLiteral("captureQueue"));
        thread_->start();
        return started;
    }

    bool isStarted() const { return thread_ != nullptr; }

    /** Returns immediately. The loop has been told to end, but may be waiting for a server. */
    void finish()
    {
        background_->start(
            [thread = std::shared_ptr<QThread>(std::move(thread_))] { thread->wait(); });
    }

private:
    const std::shared_ptr<QThreadPool> background_;
    std::unique_ptr<QThread> thread_;
};

} // namespace glimmerpane
