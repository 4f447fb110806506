// SPDX-License-Identifier: MIT
#include "tests/support/HttpsServer.h"

#include "rig/ChildProcess.h"

#include <QSslKey>

namespace glimmerpane::testing
{

QSslConfiguration serverNamed(const QString &name)
{
    const QString options
        = QStringLiteral("req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes "
                         "-days 2 -subj /CN=Test -addext subjectAltName=%1 -keyout - -out -");
    auto process = required(ChildProcess::start(
        {.program = QStringLiteral("openssl"), .arguments = options.arg(name).split(u' ')}));
    if (!process.waitForEnd(std::chrono::seconds(20)) || process.exitCode() != 0) {
        qFatal("openssl failed: %s", process.output().constData());
    }
    auto configuration = QSslConfiguration::defaultConfiguration();
    configuration.setLocalCertificate(QSslCertificate(process.output()));
    configuration.setPrivateKey(QSslKey(process.output(), QSsl::Ec));
    return configuration;
}

HttpsServer::HttpsServer(const QSslConfiguration &configuration, Answer answer)
    : answer_(std::move(answer))
{
    server_.setSslConfiguration(configuration);
    QObject::connect(&server_, &QTcpServer::pendingConnectionAvailable, &server_, [this] {
        while (auto *const connection
               = qobject_cast<QSslSocket *>(server_.nextPendingConnection())) {
            QObject::connect(connection, &QSslSocket::readyRead, connection,
                             [this, connection] { read(*connection); });
            read(*connection);
        }
    });
    if (!server_.listen(QHostAddress::LocalHost)) {
        qFatal("no port to listen on");
    }
}

QString HttpsServer::address() const
{
    return QStringLiteral("https://127.0.0.1:%1/api/v1/update/check").arg(server_.serverPort());
}

void HttpsServer::read(QSslSocket &connection)
{
    const QByteArray request = connection.peek(connection.bytesAvailable());
    if (request.contains("\r\n\r\n") && request.endsWith('}')) { // every body is a JSON object
        connection.readAll();
        requests_.append(request);
        answer_(connection);
    }
}

HttpsServer::Answer reply(const QByteArray &bytes)
{
    return [bytes](QSslSocket &connection) {
        connection.write(bytes);
        connection.disconnectFromHost();
    };
}

QByteArray message(const QByteArray &status, const QByteArray &body)
{
    return "HTTP/1.1 " + status + "\r\nContent-Length: " + QByteArray::number(body.size())
        + "\r\n\r\n" + body;
}

} // namespace glimmerpane::testing
