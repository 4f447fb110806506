// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/ChildProcess.h"

#include <QJsonObject>
#include <QJsonValue>
#include <QNetworkAccessManager>
#include <QUrl>

namespace glimmerpane::testing
{

/** A browser with one page, driven over W3C WebDriver on loopback. Ends with the object. */
class WebDriver
{
public:
    struct Options {
        QString program; ///< the driver, such as "chromedriver"
        QProcessEnvironment environment;
        QJsonObject capabilities; ///< of the session, all of which must be given
    };

    explicit WebDriver(const Options &options);
    ~WebDriver();
    Q_DISABLE_COPY_MOVE(WebDriver)

    void open(const QUrl &page);
    /** What the script's function body returns, as if a person had clicked. */
    QJsonValue run(const QString &script);

private:
    /** The "value" of the answer; ends the tests where there is none. */
    QJsonValue send(const QByteArray &method, const QString &path, const QJsonObject &body = {});

    ChildProcess driver_;
    QNetworkAccessManager network_;
    QString address_;
    QString session_;
};

} // namespace glimmerpane::testing
