// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QJsonValue>
#include <QProcessEnvironment>
#include <QRect>
#include <QUrl>

#include <cstdlib>
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

/** A pixel of the latest frame that the page has from the call, at a place of the window. */
inline QColor pixelIn(Browser &browser, QPoint place)
{
    const auto color = browser.ask(QStringLiteral("pixel(%1, %2)").arg(place.x()).arg(place.y()));
    return {color[0].toInt(), color[1].toInt(), color[2].toInt()};
}

/** Video loses colour: half of its resolution, and a few levels. */
inline bool isAlike(QColor a, QColor b)
{
    constexpr int levels = 12;
    return std::abs(a.red() - b.red()) <= levels && std::abs(a.green() - b.green()) <= levels
        && std::abs(a.blue() - b.blue()) <= levels;
}

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
