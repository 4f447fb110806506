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
 * Sends one POST request and receives the answer. All of it, including loading the TLS library,
 * happens on a separate thread, so that it cannot delay a frame. Destroying the object cancels the
 * request.
 */
class HttpsPost : private QThread
{
public:
    struct Options {
        QUrl url;
        QByteArray contentType;
        QByteArray body;
        std::chrono::milliseconds limit; ///< for the whole exchange, however steadily bytes arrive
        qsizetype largestAnswer = 0; ///< bytes; a longer one ends the request
        QByteArray authorities{}; ///< PEM; trusted instead of the system's, if not empty
    };
    struct Answer {
        std::optional<int> status; ///< null if the answer is not HTTP
        QByteArray body;
    };
    /** The error is the name of a QNetworkReply::NetworkError, or an English sentence. */
    using Result = std::expected<Answer, QString>;

    /** Starts immediately. */
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
