// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QFuture>
#include <QPromise>
#include <QThread>
#include <QUrl>

#include <chrono>
#include <expected>
#include <optional>

namespace glimmerpane
{

/**
 * Sends one POST and takes the answer. All of it, from loading the TLS library on, happens on a
 * thread of its own, so that nothing here can hold up a frame. Destroying it ends the request.
 */
class HttpsPost : private QThread
{
public:
    struct Options {
        QUrl url;
        QByteArray contentType;
        QByteArray body;
        std::chrono::milliseconds limit; ///< for everything, however steadily bytes arrive
        qsizetype largestAnswer = 0; ///< bytes; one that is longer ends the request
        QByteArray authorities{}; ///< PEM; trusted instead of the system's, if not empty
    };
    struct Answer {
        std::optional<int> status; ///< nothing if what came is not HTTP
        QByteArray body;
    };
    /** The error is one of QNetworkReply::NetworkError by its name, or an English sentence. */
    using Result = std::expected<Answer, QString>;

    /** Starts at once. */
    explicit HttpsPost(Options options);
    ~HttpsPost() override;
    Q_DISABLE_COPY_MOVE(HttpsPost)

    QFuture<Result> result() const { return promise_.future(); }

private:
    void run() override;
    Result exchange();

    const Options options_;
    QPromise<Result> promise_;
};

} // namespace glimmerpane
