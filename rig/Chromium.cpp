// SPDX-License-Identifier: MIT
#include "rig/Browser.h"
#include "rig/ChildProcess.h"
#include "rig/WaitFor.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QRegularExpression>

#include <utility>

namespace glimmerpane::testing
{

namespace
{

/** It picks the window itself, if one is named; nothing leaves this machine. */
QJsonObject capabilities(const BrowserOptions &options)
{
    const QRect place = options.place;
    QJsonArray arguments{
        QStringLiteral("--user-data-dir=%1/chromium").arg(options.home),
        QStringLiteral("--host-resolver-rules=MAP * ~NOTFOUND , EXCLUDE 127.0.0.1"),
        QStringLiteral("--disable-background-networking"),
        QStringLiteral("--disable-component-update"),
        QStringLiteral("--disable-sync"),
        QStringLiteral("--no-pings"),
        QStringLiteral("--no-first-run"),
        QStringLiteral("--no-sandbox"), // which root cannot have
        QStringLiteral("--disable-dev-shm-usage"),
        QStringLiteral("--disable-gpu"),
        QStringLiteral("--window-position=%1,%2").arg(place.x()).arg(place.y()),
        QStringLiteral("--window-size=%1,%2").arg(place.width()).arg(place.height())};
    if (!options.window.isEmpty()) {
        arguments << QStringLiteral("--auto-select-desktop-capture-source=") + options.window;
    }
    QJsonObject chrome;
    if (options.isBare) {
        arguments << QStringLiteral("--app=") + options.page.toString();
        chrome.insert(QStringLiteral("excludeSwitches"),
                      QJsonArray{QStringLiteral("enable-automation")});
    }
    chrome.insert(QStringLiteral("args"), arguments);
    const QJsonObject wanted{{QStringLiteral("browserName"), QStringLiteral("chrome")},
                             {QStringLiteral("goog:chromeOptions"), chrome}};
    return {{QStringLiteral("capabilities"), QJsonObject{{QStringLiteral("alwaysMatch"), wanted}}}};
}

/** Driven over W3C WebDriver. */
class Chromium : public Browser
{
public:
    explicit Chromium(BrowserOptions options)
        : options_(std::move(options))
        , driver_(required(ChildProcess::start({.program = QStringLiteral("chromedriver"),
                                                .arguments = {QStringLiteral("--port=0")},
                                                .environment = options_.environment})))
    {
        network_.setProxy(QNetworkProxy::NoProxy);
        static const QRegularExpression started(QStringLiteral("successfully on port (\\d+)"));
        QRegularExpressionMatch match;
        const auto isListening = [&] {
            match = started.match(QString::fromLocal8Bit(driver_.output()));
            return match.hasMatch();
        };
        if (!waitFor(isListening, browserPatience)) {
            throw Failure(QStringLiteral("chromedriver: ")
                          + QString::fromLocal8Bit(driver_.output()));
        }
        address_ = QStringLiteral("http://127.0.0.1:%1/session").arg(match.captured(1));
        const auto session = send("POST", {}, capabilities(options_));
        session_ = u'/' + session[QStringLiteral("sessionId")].toString();
        send("POST", QStringLiteral("/url"), {{QStringLiteral("url"), options_.page.toString()}});
    }
    ~Chromium() override
    {
        try {
            send("DELETE", {});
        } catch (const Failure &) { // then it ends with its driver
        }
    }
    Q_DISABLE_COPY_MOVE(Chromium)

    QJsonValue ask(const QString &expression) override
    {
        return send("POST", QStringLiteral("/execute/sync"),
                    {{QStringLiteral("script"), QStringLiteral("return window.%1").arg(expression)},
                     {QStringLiteral("args"), QJsonArray()}});
    }

    void share() override
    {
        const auto button = send("POST", QStringLiteral("/element"),
                                 {{QStringLiteral("using"), QStringLiteral("css selector")},
                                  {QStringLiteral("value"), QStringLiteral("button")}});
        send("POST",
             QStringLiteral("/element/%1/click").arg(button.toObject().begin().value().toString()));
    }

private:
    /** The "value" of the answer; fails if there is none. */
    QJsonValue send(const QByteArray &method, const QString &path, const QJsonObject &body = {})
    {
        QNetworkRequest request(QUrl(address_ + session_ + path));
        request.setHeader(QNetworkRequest::ContentTypeHeader, QStringLiteral("application/json"));
        const std::unique_ptr<QNetworkReply> reply(
            network_.sendCustomRequest(request, method, QJsonDocument(body).toJson()));
        waitFor([&] { return reply->isFinished(); }, browserPatience);
        const QByteArray answer = reply->readAll();
        if (!reply->isFinished() || reply->error() != QNetworkReply::NoError) {
            throw Failure(QStringLiteral("%1: %2 %3")
                              .arg(path, reply->errorString(), QString::fromUtf8(answer)));
        }
        return QJsonDocument::fromJson(answer).object().value(QStringLiteral("value"));
    }

    const BrowserOptions options_;
    ChildProcess driver_;
    QNetworkAccessManager network_;
    QString address_;
    QString session_;
};

} // namespace

std::unique_ptr<Browser> startChromium(const BrowserOptions &options)
{
    return std::make_unique<Chromium>(options);
}

} // namespace glimmerpane::testing
