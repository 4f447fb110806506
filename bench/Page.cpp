// SPDX-License-Identifier: MIT
#include "bench/PeerTools.h"
#include "rig/Browser.h"
#include "rig/WaitFor.h"
#include "rig/XWindows.h"

#include <QTemporaryDir>

namespace glimmerpane::bench
{

namespace
{

const QString animationTitle = u"Animation"_s;

constexpr QSize sizes[] = {{1280, 720}, {1920, 1080}, {3840, 2160}};
constexpr const char *sources[] = {"Glimmerpane's output", "the animation's own window",
                                   "the same, pointer elsewhere", "GStreamer's window"};

constexpr int mainWindowHeight = 480; ///< and some room

/** A second, of those that come to a page with which the window of this title is shared. */
double framesInPage(const MeasuredDesktop &desktop, const QString &title, const QRect &place)
{
    const QTemporaryDir home;
    auto environment = desktop.environment;
    environment.insert(u"HOME"_s, home.path());
    const auto browser = startChromium({.environment = environment,
                                        .home = home.path(),
                                        .page = QUrl::fromLocalFile(QStringLiteral(PAGE)),
                                        .window = title,
                                        .place = place});
    browser->share();
    if (!waitFor([&] { return browser->ask(u"count()"_s).toInt() > 5; }, browserPatience)) {
        throw Failure(u"the page sees no animation: "_s + browser->ask(u"said()"_s).toString());
    }
    desktop.measurement.rest(std::chrono::seconds(1));
    browser->ask(u"start()"_s);
    desktop.measurement.rest(desktop.measurement.extent.phase);
    return browser->ask(u"rate()"_s).toDouble();
}

/** All in turn on one display, with the same animation and the pointer in it. */
std::vector<double> measureSize(const Measurement &measurement, QSize size)
{
    const auto layout = StageLayout::of(size);
    const QRect browser = layout.beside.translated(0, mainWindowHeight);
    MeasuredDesktop desktop(measurement, WindowManager::Openbox, layout.screen);
    const auto animation = desktop.animate({.area = layout.area, .title = animationTitle});
    const auto through = [&](Tool kind) {
        const auto tool = startTool(desktop, kind, layout);
        awaitMotion(tool.view);
        return framesInPage(desktop, titleOf(desktop.client, tool.view.window()), browser);
    };
    const double own = through(Tool::Glimmerpane);
    desktop.end();
    const double plain = framesInPage(desktop, animationTitle, browser);
    // Chromium paints the pointer itself where it is over the window, but the tools have done so.
    desktop.input.moveTo(browser.bottomRight());
    const double elsewhere = framesInPage(desktop, animationTitle, browser);
    return {own, plain, elsewhere, through(Tool::GStreamer)};
}

void writePage(const QDir &folder, const std::vector<Figure> &figures, int runs)
{
    QString text = u"# Frames a second in a page\n\n%1\n\n| Area"_s.arg(
        machineText(u"medians of %1 turns"_s.arg(runs)));
    for (const char *source : sources) {
        text += u" | "_s + QString::fromLatin1(source);
    }
    text += u" |\n|---|---|---|---|---|\n"_s;
    auto figure = figures.begin();
    for (const QSize size : sizes) {
        text += u"| %1x%2 |"_s.arg(size.width()).arg(size.height());
        for (size_t i = 0; i < std::size(sources); ++i) {
            text += u" %1 |"_s.arg((figure++)->measured());
        }
        text += u'\n';
    }
    writeText(folder.filePath(u"page.md"_s), text);
}

} // namespace

std::vector<Figure> measurePage(const Measurement &measurement)
{
    std::vector<Figure> figures;
    for (const QSize size : sizes) {
        for (const char *source : sources) {
            figures.push_back(
                {.name = u"Frames a second in a page, %1x%2, %3"_s.arg(size.width())
                             .arg(size.height())
                             .arg(QString::fromLatin1(source)),
                 .counted = u"different frames of a 60 Hz animation in full motion that Chromium "
                            "hands to a page with which the window is shared"_s,
                 .decimals = 1});
        }
    }
    figures = measurement.repeat(figures, [&] {
        std::vector<double> rates;
        for (const QSize size : sizes) {
            std::ranges::copy(measureSize(measurement, size), std::back_inserter(rates));
        }
        return rates;
    });
    writePage(measurement.folder, figures, measurement.extent.runs);
    return figures;
}

} // namespace glimmerpane::bench
