// SPDX-License-Identifier: MIT
#include "tests/conference/WebDriver.h"

#include "tests/support/WaitFor.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QRegularExpression>

namespace glimmerpane::testing
{

namespace
{

constexpr std::chrono::seconds limit{60}; // a browser's first start on a slow machine

} // namespace

WebDriver::WebDriver(const Options &options)
    : driver_(required(ChildProcess::start({.program = options.program,
                                            .arguments = {QStringLiteral("--port=0")},
                                            .environment = options.environment})))
{
    network_.setProxy(QNetworkProxy::NoProxy);
    static const QRegularExpression started(QStringLiteral("successfully on port (\\d+)"));
    QRegularExpressionMatch match;
    const auto isListening = [&] {
        match = started.match(QString::fromLocal8Bit(driver_.output()));
        return match.hasMatch();
    };
    if (!waitFor(isListening, limit)) {
        qFatal("%s: %s", qPrintable(options.program), driver_.output().constData());
    }
    address_ = QStringLiteral("http://127.0.0.1:%1/session").arg(match.captured(1));
    const QJsonObject wanted{{QStringLiteral("alwaysMatch"), options.capabilities}};
    const auto session = send("POST", {}, {{QStringLiteral("capabilities"), wanted}});
    session_ = u'/' + session[QStringLiteral("sessionId")].toString();
}

WebDriver::~WebDriver()
{
    send("DELETE", {});
}

void WebDriver::open(const QUrl &page)
{
    send("POST", QStringLiteral("/url"), {{QStringLiteral("url"), page.toString()}});
}

QJsonValue WebDriver::run(const QString &script)
{
    return send("POST", QStringLiteral("/execute/sync"),
                {{QStringLiteral("script"), script}, {QStringLiteral("args"), QJsonArray()}});
}

QJsonValue WebDriver::send(const QByteArray &method, const QString &path, const QJsonObject &body)
{
    QNetworkRequest request(QUrl(address_ + session_ + path));
    request.setHeader(QNetworkRequest::ContentTypeHeader, QStringLiteral("application/json"));
    const std::unique_ptr<QNetworkReply> reply(
        network_.sendCustomRequest(request, method, QJsonDocument(body).toJson()));
    waitFor([&] { return reply->isFinished(); }, limit);
    const QByteArray answer = reply->readAll();
    if (!reply->isFinished() || reply->error() != QNetworkReply::NoError) {
        qFatal("%s %s: %s %s", method.constData(), qPrintable(path),
               qPrintable(reply->errorString()), answer.constData());
    }
    return QJsonDocument::fromJson(answer).object().value(QStringLiteral("value"));
}

} // namespace glimmerpane::testing
