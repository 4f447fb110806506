// SPDX-License-Identifier: MIT
#include "rig/Browser.h"
#include "rig/ChildProcess.h"
#include "rig/WaitFor.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkProxy>
#include <QTcpServer>
#include <QTcpSocket>

namespace glimmerpane::testing
{

namespace
{

/** The proxy for all but loopback addresses is a port on which nothing listens. */
const char *const preferences = R"(
user_pref("marionette.port", %1);
user_pref("network.proxy.type", 1);
user_pref("network.proxy.http", "127.0.0.1");
user_pref("network.proxy.http_port", 9);
user_pref("network.proxy.ssl", "127.0.0.1");
user_pref("network.proxy.ssl_port", 9);
user_pref("app.update.enabled", false);
user_pref("datareporting.policy.dataSubmissionEnabled", false);
user_pref("browser.shell.checkDefaultBrowser", false);
)";

// The picker is a panel of the browser's own window, whose scripts do what a user would: they pick
// the window once it is listed, and press "Allow" once that can be done. True once all is done.
const QString shareWindow = QStringLiteral(R"(
const list = document.getElementById('webRTC-selectWindow-menulist');
const items = [...list.querySelectorAll('menuitem')];
const index = items.findIndex(item => item.label === '%1');
if (index >= 0 && list.selectedIndex !== index) {
    list.selectedIndex = index;
    items[index].doCommand();
}
const button = PopupNotifications.panel.firstElementChild?.button;
if (index >= 0 && button && !button.disabled) {
    button.click();
}
return index >= 0 && !PopupNotifications.isPanelOpen;
)");

quint16 freePort()
{
    QTcpServer server;
    server.listen(QHostAddress::LocalHost);
    return server.serverPort();
}

/** Driven over Marionette, the browser's own protocol: JSON lists with their length in front. */
class Firefox : public Browser
{
public:
    explicit Firefox(const BrowserOptions &options)
        : window_(options.window)
    {
        const quint16 port = freePort();
        QFile file(options.home + QStringLiteral("/user.js"));
        if (!file.open(QIODevice::WriteOnly)
            || file.write(QString::fromLatin1(preferences).arg(port).toLatin1()) < 0) {
            throw Failure(QStringLiteral("cannot write ") + file.fileName());
        }
        file.close();
        process_ = required(ChildProcess::start(
            {.program = QStringLiteral("firefox-esr"),
             .arguments
             = {QStringLiteral("--marionette"), QStringLiteral("-remote-allow-system-access"),
                QStringLiteral("--no-remote"), QStringLiteral("--profile"), options.home,
                QStringLiteral("--width"), QString::number(options.place.width())},
             .environment = options.environment}));
        socket_.setProxy(QNetworkProxy::NoProxy);
        const auto connects = [&] {
            if (socket_.state() == QAbstractSocket::UnconnectedState) {
                socket_.connectToHost(QHostAddress::LocalHost, port);
            }
            return socket_.state() == QAbstractSocket::ConnectedState;
        };
        if (!waitFor(connects, browserPatience)) {
            fail(QStringLiteral("does not start"));
        }
        receive(); // its greeting
        send(QStringLiteral("WebDriver:NewSession"));
        send(QStringLiteral("WebDriver:Navigate"),
             {{QStringLiteral("url"), options.page.toString()}});
    }

    QJsonValue ask(const QString &expression) override
    {
        return run(QStringLiteral("content"), QStringLiteral("return window.%1").arg(expression));
    }

    void share() override
    {
        setContext(QStringLiteral("content"));
        const auto button = send(QStringLiteral("WebDriver:FindElement"),
                                 {{QStringLiteral("using"), QStringLiteral("css selector")},
                                  {QStringLiteral("value"), QStringLiteral("button")}});
        send(QStringLiteral("WebDriver:ElementClick"),
             {{QStringLiteral("id"), button[QStringLiteral("value")].toObject().begin().value()}});
        const auto isShared
            = [&] { return run(QStringLiteral("chrome"), shareWindow.arg(window_)).toBool(); };
        if (!waitFor(isShared, browserPatience)) {
            fail(QStringLiteral("does not share ") + window_);
        }
    }

private:
    [[noreturn]] void fail(const QString &what) const
    {
        throw Failure(QStringLiteral("firefox %1; it said: %2")
                          .arg(what, QString::fromLocal8Bit(process_.output())));
    }

    void setContext(const QString &context)
    {
        send(QStringLiteral("Marionette:SetContext"), {{QStringLiteral("value"), context}});
    }

    QJsonValue run(const QString &context, const QString &script)
    {
        setContext(context);
        return send(QStringLiteral("WebDriver:ExecuteScript"),
                    {{QStringLiteral("script"), script},
                     {QStringLiteral("args"), QJsonArray()}})[QStringLiteral("value")];
    }

    QJsonValue send(const QString &command, const QJsonObject &parameters = {})
    {
        constexpr int request = 0;
        const QByteArray message
            = QJsonDocument(QJsonArray{request, ++sent_, command, parameters}).toJson();
        socket_.write(QByteArray::number(message.size()) + ':' + message);
        const QJsonDocument answer = receive();
        if (!answer[2].isNull()) {
            fail(QStringLiteral("%1: %2").arg(command, QString::fromUtf8(answer.toJson())));
        }
        return answer[3];
    }

    QJsonDocument receive()
    {
        qsizetype colon = -1;
        qsizetype size = 0;
        const auto isWhole = [&] {
            received_ += socket_.readAll();
            colon = received_.indexOf(':');
            size = received_.left(colon).toLongLong();
            return colon > 0 && received_.size() > colon + size;
        };
        if (!waitFor(isWhole, browserPatience)) {
            fail(QStringLiteral("does not answer"));
        }
        const auto message = QJsonDocument::fromJson(received_.mid(colon + 1, size));
        received_.remove(0, colon + 1 + size);
        return message;
    }

    const QString window_;
    ChildProcess process_;
    QTcpSocket socket_;
    QByteArray received_;
    int sent_ = 0;
};

} // namespace

std::unique_ptr<Browser> startFirefox(const BrowserOptions &options)
{
    return std::make_unique<Firefox>(options);
}

} // namespace glimmerpane::testing
