// SPDX-License-Identifier: MIT
#pragma once

#include <QSslConfiguration>
#include <QSslServer>
#include <QSslSocket>

#include <functional>

namespace glimmerpane::testing
{

/**
 * A server that proves to be `name`, such as "IP:127.0.0.1" or "DNS:x.example", to clients that
 * trust its certificate. That is made with the program openssl and signed by nobody else.
 */
QSslConfiguration serverNamed(const QString &name);

/** A server on loopback; a function answers each request. */
class HttpsServer
{
public:
    /** Called with the connection once the whole request has been read. */
    using Answer = std::function<void(QSslSocket &)>;

    HttpsServer(const QSslConfiguration &configuration, Answer answer);

    /** The address to use as the update service's. */
    QString address() const;
    /** Heads and bodies as received, without those of refused connections. */
    const QList<QByteArray> &requests() const { return requests_; }

private:
    void read(QSslSocket &connection);

    QSslServer server_;
    Answer answer_;
    QList<QByteArray> requests_;
};

/** Answers with these bytes and closes. */
HttpsServer::Answer reply(const QByteArray &bytes);
/** A complete answer with this status. */
QByteArray message(const QByteArray &status, const QByteArray &body);

} // namespace glimmerpane::testing
