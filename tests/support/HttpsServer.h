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

/** A server on loopback that lets a function answer each request. */
class HttpsServer
{
public:
    /** Gets the connection once the whole request has been read from it. */
    using Answer = std::function<void(QSslSocket &)>;

    HttpsServer(const QSslConfiguration &configuration, Answer answer);

    /** Where the update service would be. */
    QString address() const;
    /** Heads and bodies as they came, those of refused connections left out. */
    const QList<QByteArray> &requests() const { return requests_; }

private:
    void read(QSslSocket &connection);

    QSslServer server_;
    Answer answer_;
    QList<QByteArray> requests_;
};

/** Answers with these bytes and closes. */
HttpsServer::Answer reply(const QByteArray &bytes);
/** A whole answer of this status. */
QByteArray message(const QByteArray &status, const QByteArray &body);

} // namespace glimmerpane::testing
