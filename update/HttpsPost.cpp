// SPDX-License-Identifier: MIT
#include "update/HttpsPost.h"

#include "update/Log.h"

#include <QIODevice>
#include <QMetaEnum>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QSslConfiguration>
#include <QTimer>

#include <algorithm>
#include <memory>
#include <utility>

namespace glimmerpane
{

namespace
{

QNetworkRequest requestFor(const HttpsPost::Options &options)
{
    QNetworkRequest request(options.url);
    request.setHeader(QNetworkRequest::ContentTypeHeader, QString::fromLatin1(options.contentType));
    request.setHeader(QNetworkRequest::ContentLengthHeader, options.body.size());
    request.setAttribute(QNetworkRequest::DoNotBufferUploadDataAttribute, true);
    // By default, Qt sends the user's language.
    request.setRawHeader("Accept-Language", "*");
    // Only the service itself may answer, so no redirects.
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::ManualRedirectPolicy);
    auto tls = QSslConfiguration::defaultConfiguration();
    tls.setPeerVerifyMode(QSslSocket::VerifyPeer);
    if (!options.authorities.isEmpty()) {
        tls.setCaCertificates(QSslCertificate::fromData(options.authorities));
    }
    request.setSslConfiguration(tls);
    return request;
}

/**
 * A body that can be read only once cannot be sent twice: Qt would repeat a request whose
 * connection closes without an answer.
 */
class BodyToSendOnce : public QIODevice
{
public:
    explicit BodyToSendOnce(const QByteArray &body)
        : rest_(body)
    {
        open(ReadOnly | Unbuffered);
    }

    bool isSequential() const override { return true; }
    bool reset() override { return false; }
    bool atEnd() const override { return rest_.isEmpty(); }
    qint64 bytesAvailable() const override { return rest_.size(); }

protected:
    qint64 readData(char *data, qint64 maxSize) override
    {
        const auto size = std::min(maxSize, static_cast<qint64>(rest_.size()));
        std::copy_n(rest_.constData(), size, data);
        rest_.remove(0, size);
        return size > 0 ? size : -1;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QByteArray rest_;
};

/**
 * The name of a network or proxy error; null if an answer arrived. Qt's remaining errors only
 * repeat its status, or say that it has none.
 */
QString transportError(const QNetworkReply &reply)
{
    using Error = QNetworkReply::NetworkError;
    constexpr int askedByProxy = 407;
    const Error error = reply.error();
    const QVariant status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute);
    // A status always comes from the service; a proxy's own is not reported.
    const bool isServices
        = error == Error::ProxyAuthenticationRequiredError && status.toInt() == askedByProxy;
    if (error == Error::NoError || error > Error::UnknownProxyError || isServices) {
        return {};
    }
    qCInfo(updateLog) << "request failed:" << reply.errorString(); // in the user's language
    return QString::fromLatin1(
        QMetaEnum::fromType<QNetworkReply::NetworkError>().valueToKey(error));
}

} // namespace

HttpsPost::HttpsPost(Options options)
    : options_(std::move(options))
{
    promise_.start();
    start();
}

HttpsPost::~HttpsPost()
{
    quit();
    wait();
}

void HttpsPost::run()
{
    promise_.addResult(exchange());
    promise_.finish();
}

HttpsPost::Result HttpsPost::exchange()
{
    BodyToSendOnce body(options_.body);
    QNetworkAccessManager manager;
    const std::unique_ptr<QNetworkReply> reply(manager.post(requestFor(options_), &body));
    reply->setReadBufferSize(options_.largestAnswer);
    Answer answer;
    QString failure;
    const auto fail = [&](const QString &why) {
        failure = why;
        quit();
    };
    const auto take = [&] {
        answer.body += reply->readAll();
        if (answer.body.size() > options_.largestAnswer) {
            fail(QStringLiteral("The answer is too long."));
        }
    };
    QObject::connect(reply.get(), &QNetworkReply::readyRead, &manager, take);
    QObject::connect(reply.get(), &QNetworkReply::finished, &manager, [this] { quit(); });
    QTimer::singleShot(options_.limit, &manager,
                       [&] { fail(QStringLiteral("The request timed out.")); });
    exec();
    if (failure.isEmpty() && !reply->isFinished()) {
        failure = QStringLiteral("The request was cancelled.");
    }
    if (failure.isEmpty()) {
        take();
    }
    if (failure.isEmpty()) {
        failure = transportError(*reply);
    }
    if (!failure.isEmpty()) {
        return std::unexpected(failure);
    }
    const QVariant status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
    answer.status = status.isValid() ? std::optional(status.toInt()) : std::nullopt;
    return answer;
}

} // namespace glimmerpane
