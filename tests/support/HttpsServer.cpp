// SPDX-License-Identifier: MIT
#include "tests/support/HttpsServer.h"

#include "rig/ChildProcess.h"

#include <QFile>
#include <QSslKey>

namespace glimmerpane::testing
{

namespace
{

/** A new key and a certificate for it. */
void runOpenssl(const QStringList &arguments)
{
    const QStringList key
        = QStringLiteral("req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes "
                         "-days 2")
              .split(u' ');
    auto process = required(
        ChildProcess::start({.program = QStringLiteral("openssl"), .arguments = key + arguments}));
    if (!process.waitForEnd(std::chrono::seconds(20)) || process.exitCode() != 0) {
        qFatal("openssl failed: %s", process.output().constData());
    }
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

CertificateAuthority::CertificateAuthority()
{
    runOpenssl({QStringLiteral("-subj"), QStringLiteral("/CN=Test authority"),
                QStringLiteral("-keyout"), folder_.filePath(QStringLiteral("key")),
                QStringLiteral("-out"), folder_.filePath(QStringLiteral("certificate"))});
}

QByteArray CertificateAuthority::certificate() const
{
    return contentOf(folder_.filePath(QStringLiteral("certificate")));
}

QSslConfiguration CertificateAuthority::serverNamed(const QString &name) const
{
    const QString key = folder_.filePath(QStringLiteral("server key"));
    const QString certificate = folder_.filePath(QStringLiteral("server certificate"));
    runOpenssl({QStringLiteral("-CA"), folder_.filePath(QStringLiteral("certificate")),
                QStringLiteral("-CAkey"), folder_.filePath(QStringLiteral("key")),
                QStringLiteral("-subj"), QStringLiteral("/CN=Test server"),
                QStringLiteral("-addext"), QStringLiteral("subjectAltName=") + name,
                QStringLiteral("-addext"), QStringLiteral("basicConstraints=critical,CA:FALSE"),
                QStringLiteral("-keyout"), key, QStringLiteral("-out"), certificate});
    auto configuration = QSslConfiguration::defaultConfiguration();
    configuration.setLocalCertificate(QSslCertificate(contentOf(certificate)));
    configuration.setPrivateKey(QSslKey(contentOf(key), QSsl::Ec));
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
    constexpr QByteArrayView length = "content-length: ";
    const QByteArray request = connection.peek(connection.bytesAvailable());
    const auto end = request.indexOf("\r\n\r\n");
    const auto at = request.toLower().indexOf(length);
    if (end < 0 || at < 0) {
        return;
    }
    const auto number = at + length.size();
    const auto body = request.mid(number, request.indexOf('\r', number) - number).toLongLong();
    if (request.size() >= end + 4 + body) {
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
