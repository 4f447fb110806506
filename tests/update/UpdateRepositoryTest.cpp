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

    const CertificateAuthority authority_;
    const CertificateAuthority stranger_;
    const QString name_ = QStringLiteral("IP:127.0.0.1");
    const QSslConfiguration trusted_ = authority_.serverNamed(name_);

    QString ask(const QString &address, std::chrono::milliseconds limit = never,
                const QString &serial = QStringLiteral("01ab")) const
    {
        UpdateRepository repository(
            {.address = address, .limit = limit, .authorities = authority_.certificate()});
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

    void answer_isReadStrictly_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<QString>("result");
        const auto body = [](const char *name, const QByteArray &json, const char *result) {
            QTest::newRow(name) << message("200 OK", json) << QString::fromUtf8(result);
        };
        const auto edited
            = [](const char *from, const char *to) { return QByteArray(good).replace(from, to); };
        const char *const noObject = "it is not a JSON object";
        const char *const noFlag = "\"canUpdate\" is neither true nor false";
        body("no update", edited("true", "false"), "1.5.0 https://x 0");
        body("older, without a place", edited("1.5.0", "0").replace("https://x", ""), "0  1");
        body("other members", edited("{", R"({"a":[{}],"b":null,)"), "1.5.0 https://x 1");
        body("twice", edited("}", R"(,"canUpdate":false})"), "1.5.0 https://x 0");
        body("escapes", edited("1.5.0", R"(\u0031\n)"), "1\n https://x 1");
        body("no version", edited("lastApp", "lastapp"), "\"lastAppVersion\" is not a string");
        body("number for a text", edited("\"1.5.0\"", "1.5"), "\"lastAppVersion\" is not a string");
        body("no place", edited("downloadUrl", "url"), "\"downloadUrl\" is not a string");
        body("null for a text", edited("\"https://x\"", "null"), "\"downloadUrl\" is not a string");
        body("no flag", edited("canUpdate", "x"), noFlag);
        body("number for a flag", edited("true", "1"), noFlag);
        body("text for a flag", edited("true", "\"true\""), noFlag);
        body("nothing", "", noObject);
        body("not JSON", "<html>", noObject);
        body("cut off", good.chopped(1), noObject);
        body("list", '[' + good + ']', noObject);
        body("something behind", good + "{}", noObject);
        body("NUL behind", good + QByteArray("\0x", 2), noObject);
        body("invalid UTF-8", edited("1.5.0", "\xff\xc0\x80"), noObject);
        body("half a surrogate pair", edited("1.5.0", R"(\ud800)"), noObject);
        body("deep",
             edited("{", "{\"a\":" + QByteArray(400000, '[') + QByteArray(400000, ']') + ','),
             "1.5.0 https://x 1");
        body("deep and open", QByteArray(1024 * 1024, '['), noObject);

        const auto row = [](const char *name, const QByteArray &answer, const char *result) {
            QTest::newRow(name) << answer << QString::fromUtf8(result);
        };
        row("until the end", "HTTP/1.1 200 OK\r\n\r\n" + good, "1.5.0 https://x 1");
        for (const char *status :
             {"201 Created", "202 Accepted", "304 Not Modified", "400 No",
              "401 No\r\nWWW-Authenticate: Basic realm=\"x\"", "404 No",
              "407 No\r\nProxy-Authenticate: Basic realm=\"x\"", "500 No", "503 No", "999 No"}) {
            const QByteArray code(status, 3);
            row(status, message(status, good),
                ("httpError(statusCode: " + code + ")|HTTP error: " + code).constData());
        }
        row("204", "HTTP/1.1 204 No Content\r\n\r\n", "httpError(statusCode: 204)|HTTP error: 204");
        row("not HTTP", "SSH-2.0-OpenSSH_9\r\n\r\n",
            "invalidResponse|Invalid response from server");
        row("no answer", "", "invalidResponse");
        row("half an answer", message("200 OK", good).chopped(9), "RemoteHostClosedError");
        row("long", message("200 OK", good + QByteArray(10'000'000, ' ')),
            "The answer is too long.");
        row("long refusal", message("500 No", QByteArray(10'000'000, ' ')),
            "The answer is too long.");
    }
    void answer_isReadStrictly()
    {
        QFETCH(QByteArray, answer);
        QFETCH(QString, result);
        const HttpsServer server(trusted_, reply(answer));
        const QString text = ask(server.address());
        QVERIFY2(text.contains(result), qPrintable(text));
        QCOMPARE(text.contains(u'\n'), result.contains(u'\n'));
        QCOMPARE(server.requests().size(), 1);
    }

    void redirection_isNotFollowed()
    {
        const HttpsServer other(trusted_, reply(message("200 OK", good)));
        for (const char *status : {"301 Moved", "302 Found", "307 Moved", "308 Moved"}) {
            const HttpsServer server(
                trusted_,
                reply(message(QByteArray(status) + "\r\nLocation: " + other.address().toUtf8(),
                              good)));
            QCOMPARE(
                ask(server.address()).section(u'|', 0, 0),
                QStringLiteral("httpError(statusCode: %1)").arg(QString::fromLatin1(status, 3)));
        }
        QCOMPARE(other.requests().size(), 0);
    }

    void answerWithoutEnd_endsWithTheTransportsError_data()
    {
        const QByteArray head = "HTTP/1.1 200 OK\r\n";
        const QByteArray blank(16384, ' ');
        QTest::addColumn<Answer>("answer");
        QTest::addColumn<QString>("result");
        QTest::addColumn<std::chrono::milliseconds>("limit");
        const auto row = [](const char *name, const Answer &answer, const char *result,
                            std::chrono::milliseconds limit) {
            QTest::newRow(name) << answer << QString::fromLatin1(result) << limit;
        };
        row("body", endless(head + "\r\n", blank), "too long", never);
        row("chunks",
            endless(head + "Transfer-Encoding: chunked\r\n\r\n", "4000\r\n" + blank + "\r\n"),
            "too long", never);
        row("head", endless(head, "X: " + blank + "\r\n"), "timed out", 300ms);
        row("silence", [](QSslSocket &) { }, "timed out", 300ms);
        row("a byte now and then", drip, "timed out", 300ms);
    }
    void answerWithoutEnd_endsWithTheTransportsError()
    {
        QFETCH(Answer, answer);
        QFETCH(QString, result);
        QFETCH(std::chrono::milliseconds, limit);
        const HttpsServer server(trusted_, answer);
        const QString text = ask(server.address(), limit);
        QVERIFY2(text.contains(result), qPrintable(text));
        QCOMPARE(server.requests().size(), 1);
    }

    void strangers_getNoRequest()
    {
        const auto answer = reply(message("200 OK", good));
        for (const QSslConfiguration &configuration :
             {stranger_.serverNamed(name_), authority_.serverNamed(QStringLiteral("DNS:x.example")),
              authority_.serverNamed(QStringLiteral("IP:127.0.0.2"))}) {
            const HttpsServer server(configuration, answer);
            const QString text = ask(server.address());
            QVERIFY2(text.startsWith(QStringLiteral("SslHandshakeFailedError|")), qPrintable(text));
            QCOMPARE(server.requests().size(), 0);
        }
    }

    void address_thatLeadsNowhere_isAnError()
    {
        using Row = std::pair<QString, const char *>;
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
                                  .authorities = authority_.certificate()});
            result = post.result();
            QVERIFY(waitFor([&] { return server.requests().size() == 1; }, 10s));
        }
        QVERIFY(result.isFinished());
        QCOMPARE(result.result().error(), QStringLiteral("The request was cancelled."));
    }
};

QTEST_GUILESS_MAIN(UpdateRepositoryTest)
#include "UpdateRepositoryTest.moc"
