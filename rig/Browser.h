// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonValue>
#include <QProcessEnvironment>
#include <QRect>
#include <QUrl>

#include <memory>

namespace glimmerpane::testing
{

/** A real browser with one page, in which a window is shared as if a user had picked it. */
class Browser
{
public:
    virtual ~Browser() = default;

    /** The value of an expression of the page's scripts, such as "state()". */
    virtual QJsonValue ask(const QString &expression) = 0;

    /** Presses the page's button, and picks the window if the browser asks. */
    virtual void share() = 0;
};

/** Enough for a browser's first start on a slow machine. */
constexpr auto browserPatience = std::chrono::seconds(60);

/** Ends with the object, keeps its files in `home` and sends nothing off this machine. */
struct BrowserOptions {
    QProcessEnvironment environment;
    QString home;
    QUrl page;
    QString window{}; ///< the title of the window that share() picks
    QRect place{820, 20, 450, 700}; ///< root pixels; Firefox takes the width only
    bool isBare = false; ///< without tabs, address and notices around the page; Chromium only
};
std::unique_ptr<Browser> startChromium(const BrowserOptions &options);
std::unique_ptr<Browser> startFirefox(const BrowserOptions &options);

} // namespace glimmerpane::testing
