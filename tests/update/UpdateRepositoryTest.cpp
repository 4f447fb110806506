// SPDX-License-Identifier: MIT
#include "update/UpdateRepository.h"
#include "rig/WaitFor.h"
#include "tests/support/HttpsServer.h"
#include "update/HttpsPost.h"

#include <QCoroTask>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QTimer>

using namespace glimmerpane;
using namespace glimmerpane::testing;

using Answer = HttpsServer::Answer;

namespace
{

using namespace std::chrono_literals;

constexpr auto never = 1min; ///< a limit that nothing here comes near
const QByteArray good = R"({"lastAppVersion":"1.5.0","downloadUrl":"https://x","canUpdate":true})";

/** Writes the head, then the piece whenever there is room, and never ends. */
Answer endless(const QByteArray &head, const QByteArray &piece)
{
    return [head, piece](QSslSocket &connection) {
        const auto more = [&connection, piece] { connection.write(piece); };
        QObject::connect(&connection, &QSslSocket::encryptedBytesWritten, &connection, more);
        connection.write(head + piece);
    };
}

/** A byte now and then. */
void drip(QSslSocket &connection)
{
    connection.write("HTTP/1.1 200 OK\r\n\r\n");
    auto *const timer = new QTimer(&connection);
    timer->callOnTimeout(&connection, [&connection] {
        connection.write(" ");
        connection.flush();
    });
    timer->start(20ms);
}

QString textOf(const UpdateRepositoryProtocol::CheckResult &result)
{
    return result ? QStringLiteral("%1 %2 %3")
                        .arg(result->lastAppVersion, result->downloadUrl)
                        .arg(result->canUpdate)
                  : result.error().log + u'|' + result.error().text;
}

} // namespace

class UpdateRepositoryTest : public QObject
{
    Q_OBJECT

    const QSslConfiguration trusted_ = serverNamed(QStringLiteral("IP:127.0.0.1"));

    QString ask(const QString &address, std::chrono::milliseconds limit = never,
                const QString &serial = QStringLiteral("01ab"),
                const QByteArray &alsoTrusted = {}) const
    {
        UpdateRepository repository(
            {.address = address,
             .limit = limit,
             .authorities = trusted_.localCertificate().toPem() + alsoTrusted});
        return textOf(QCoro::waitFor(repository.checkForUpdate(serial, QStringLiteral("N/A"))));
    }

private Q_SLOTS:
    void initTestCase()
    {
        // A proxy of this machine would be asked for loopback addresses, too.
        for (const char *name : {"https_proxy", "HTTPS_PROXY", "all_proxy", "ALL_PROXY"}) {
            qunsetenv(name);
        }
    }

    void request_holdsTheTwoTextsAndNothingElse()
    {
        const HttpsServer server(trusted_, reply(message("200 OK", good)));
        const QString serial = QStringLiteral("a\"\\\u00fc\n");
        QCOMPARE(ask(server.address(), never, serial), QStringLiteral("1.5.0 https://x 1"));
        QCOMPARE(server.requests().size(), 1);
        const QByteArray request = server.requests().front();
        const auto end = request.indexOf("\r\n\r\n");
        const QJsonObject expected{{QStringLiteral("serialNumber"), serial},
                                   {QStringLiteral("appVersion"), QStringLiteral("N/A")}};
        QCOMPARE(QJsonDocument::fromJson(request.mid(end + 4)).object(), expected);
        QVERIFY(!request.mid(end + 4).contains(' '));
        QList<QByteArray> head = request.first(end).toLower().split('\n');
        QCOMPARE(head.takeFirst(), QByteArray("post /api/v1/update/check http/1.1\r"));
        QVERIFY(head.contains("content-type: application/json\r"));
        QVERIFY(head.contains("accept-language: *\r"));
        for (const QByteArray &line : head) { // what every HTTP client says of itself
            const QByteArray name = line.left(line.indexOf(':'));
            QVERIFY2(QList<QByteArray>({"host", "connection", "user-agent", "accept-encoding",
                                        "accept-language", "content-type", "content-length"})
                         .contains(name),
                     line.constData());
        }
    }

    void answer_isReadStrictly()
    {
        using Row = std::pair<QByteArray, QByteArray>;
        const auto edited = [](const char *from, const QByteArray &to) {
            return message("200 OK", QByteArray(good).replace(from, to));
        };
        const auto body = [](const QByteArray &json) { return message("200 OK", json); };
        const char *const whole = "1.5.0 https://x 1";
        const char *const noVersion = "\"lastAppVersion\" is not a string";
        const char *const noAddress = "\"downloadUrl\" is not a string";
        const char *const noFlag = "\"canUpdate\" is neither true nor false";
        const char *const noObject = "it is not a JSON object";
        const QByteArray deep = QByteArray(400000, '[') + QByteArray(400000, ']');
        std::vector<Row> rows{
            {edited("true", "false"), "1.5.0 https://x 0"},
            {edited("https://x", ""), "1.5.0  1"},
            {edited("1.5.0", R"(\u0031\n)"), "1\n https://x 1"},
            {edited("{", "{\"a\":" + deep + ','), whole},
            {edited("lastApp", "lastapp"), noVersion},
            {edited("\"1.5.0\"", "1.5"), noVersion},
            {edited("downloadUrl", "url"), noAddress},
            {edited("\"https://x\"", "null"), noAddress},
            {edited("canUpdate", "x"), noFlag},
            {edited("true", "1"), noFlag},
            {edited("true", "\"true\""), noFlag},
            {edited("1.5.0", "\xff\xc0\x80"), noObject},
            {edited("1.5.0", R"(\ud800)"), noObject},
            {body(""), noObject},
            {body(good.chopped(1)), noObject},
            {body('[' + good + ']'), noObject},
            {body(good + QByteArray("\0x", 2)), noObject},
            {body(QByteArray(1024 * 1024, '[')), noObject},
            {body(good + QByteArray(10'000'000, ' ')), "The answer is too long."},
            {message("500 No", QByteArray(10'000'000, ' ')), "The answer is too long."},
            {"HTTP/1.1 200 OK\r\n\r\n" + good, whole}, // which ends with the connection
            {"SSH-2.0-OpenSSH_9\r\n\r\n", "invalidResponse|Invalid response from server"},
            {"", "invalidResponse"},
            {body(good).chopped(9), "RemoteHostClosedError"}};
        for (const char *status :
             {"201 Created", "202 Accepted", "204 No Content", "304 Not Modified", "400 No",
              "401 No\r\nWWW-Authenticate: Basic realm=\"x\"", "404 No",
              "407 No\r\nProxy-Authenticate: Basic realm=\"x\"", "503 No", "999 No"}) {
            const QByteArray code(status, 3);
            rows.emplace_back(message(status, good),
                              "httpError(statusCode: " + code + ")|HTTP error: " + code);
        }
        for (const auto &[answer, result] : rows) {
            const HttpsServer server(trusted_, reply(answer));
            const QByteArray text = ask(server.address()).toLatin1();
            QVERIFY2(text.contains(result), result + "; got: " + text);
            QCOMPARE(text.contains('\n'), result.contains('\n'));
            QCOMPARE(server.requests().size(), 1);
        }
    }

    void redirection_isNotFollowed()
    {
        const HttpsServer other(trusted_, reply(message("200 OK", good)));
        const QByteArray location = "\r\nLocation: " + other.address().toUtf8();
        for (const char *status : {"301", "302", "307", "308"}) {
            const HttpsServer server(trusted_,
                                     reply(message(status + (" Moved" + location), good)));
            QVERIFY(ask(server.address())
                        .startsWith(QStringLiteral("httpError(statusCode: %1)|")
                                        .arg(QString::fromLatin1(status))));
        }
        QCOMPARE(other.requests().size(), 0);
    }

    void answerWithoutEnd_endsWithTheTransportsError()
    {
        using Row = std::tuple<Answer, const char *, std::chrono::milliseconds>;
        const QByteArray head = "HTTP/1.1 200 OK\r\n";
        const QByteArray chunked = head + "Transfer-Encoding: chunked\r\n\r\n";
        const QByteArray blank(16384, ' ');
        for (const auto &[answer, result, limit] :
             {Row{endless(head + "\r\n", blank), "too long", never},
              Row{endless(chunked, "4000\r\n" + blank + "\r\n"), "too long", never},
              Row{endless(head, "X: " + blank + "\r\n"), "timed out", 300ms},
              Row{[](QSslSocket &) { }, "timed out", 300ms}, Row{drip, "timed out", 300ms}}) {
            const HttpsServer server(trusted_, answer);
            const QString text = ask(server.address(), limit);
            QVERIFY2(text.contains(QLatin1String(result)), qPrintable(text));
            QCOMPARE(server.requests().size(), 1);
        }
    }

    void address_thatLeadsToNobodyTrusted_isAnError()
    {
        using Row = std::tuple<QString, const char *>;
        const QString gone = HttpsServer(trusted_, {}).address();
        for (const auto &[address, result] :
             {Row(gone, "ConnectionRefusedError"),
              Row(QStringLiteral("https://[x/"), "invalidURL|Invalid API URL"),
              Row(QString(), "invalidURL"), Row(QStringLiteral("https://"), "invalidURL"),
              Row(QString(gone).replace(QStringLiteral("https"), QStringLiteral("http")),
                  "invalidURL")}) {
            const QString text = ask(address);
            QVERIFY2(text.contains(QLatin1String(result)), qPrintable(address + u' ' + text));
        }
        for (const auto &[name, isTrusted] :
             {std::pair("IP:127.0.0.1", false), {"DNS:x.example", true}, {"IP:127.0.0.2", true}}) {
            const QSslConfiguration stranger = serverNamed(QLatin1String(name));
            const HttpsServer server(stranger, reply(message("200 OK", good)));
            const QByteArray certificate = stranger.localCertificate().toPem();
            const QString text
                = ask(server.address(), never, {}, isTrusted ? certificate : QByteArray());
            QVERIFY2(text.startsWith(QStringLiteral("SslHandshakeFailedError|")), qPrintable(text));
            QCOMPARE(server.requests().size(), 0);
        }
    }

    void refusalOfAProxy_isTheTransportsError()
    {
        QTcpServer proxy;
        QVERIFY(proxy.listen(QHostAddress::LocalHost));
        connect(&proxy, &QTcpServer::newConnection, &proxy, [&proxy] {
            QTcpSocket *const connection = proxy.nextPendingConnection();
            connect(connection, &QTcpSocket::readyRead, connection, [connection] {
                connection->write(message("407 No\r\nProxy-Authenticate: Basic realm=\"x\"", {}));
            });
        });
        const auto address = QStringLiteral("http://127.0.0.1:%1").arg(proxy.serverPort());
        qputenv("https_proxy", address.toLatin1());
        const QString text = ask(QStringLiteral("https://updates.example/x"));
        qunsetenv("https_proxy");
        QCOMPARE(text.section(u'|', 0, 0), QStringLiteral("ProxyAuthenticationRequiredError"));
    }

    void request_ends_whenItsOwnerGoes()
    {
        const HttpsServer server(trusted_, [](QSslSocket &) { });
        QFuture<HttpsPost::Result> result;
        {
            const HttpsPost post({.url = QUrl(server.address()),
                                  .contentType = "text/plain",
                                  .body = "{}",
                                  .limit = never,
                                  .largestAnswer = 1,
                                  .authorities = trusted_.localCertificate().toPem()});
            result = post.result();
            QVERIFY(waitFor([&] { return server.requests().size() == 1; }, 10s));
        }
        QVERIFY(result.isFinished());
        QCOMPARE(result.result().error(), QStringLiteral("The request was cancelled."));
    }
};

QTEST_GUILESS_MAIN(UpdateRepositoryTest)
#include "UpdateRepositoryTest.moc"
