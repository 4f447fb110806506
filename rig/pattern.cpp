// SPDX-License-Identifier: MIT
#include "rig/PatternAnimation.h"
#include "rig/StopSignals.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QRegularExpression>
#include <QTextStream>

#include <condition_variable>
#include <map>
#include <mutex>

using glimmerpane::testing::PatternAnimation;
using glimmerpane::testing::PatternMode;
using glimmerpane::testing::PatternWindow;

namespace
{

/** WIDTHxHEIGHT+X+Y; empty if it is anything else. */
QRect rectangleOf(const QString &text)
{
    static const QRegularExpression form(QStringLiteral("^(\\d+)x(\\d+)\\+(\\d+)\\+(\\d+)$"));
    const auto match = form.match(text);
    if (!match.hasMatch()) {
        return {};
    }
    return {match.captured(3).toInt(), match.captured(4).toInt(), match.captured(1).toInt(),
            match.captured(2).toInt()};
}

void waitForStop(const std::stop_token &stop)
{
    std::mutex mutex;
    std::condition_variable_any condition;
    std::unique_lock lock(mutex);
    condition.wait(lock, stop, [] { return false; });
}

int fail(const QString &text)
{
    QTextStream(stderr) << "glimmerpane_pattern: " << text << "\n";
    return 1;
}

} // namespace

int main(int argc, char **argv)
{
    const glimmerpane::testing::StopSignals signals;
    const QCoreApplication application(argc, argv);
    const std::map<QString, PatternMode> modes{{QStringLiteral("full"), PatternMode::FullMotion},
                                               {QStringLiteral("small"), PatternMode::SmallChange},
                                               {QStringLiteral("cursor"), PatternMode::Cursor},
                                               {QStringLiteral("typing"), PatternMode::Typing},
                                               {QStringLiteral("still"), PatternMode::Still}};
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Plays a numbered animation until stopped."));
    parser.addHelpOption();
    const QCommandLineOption geometry(QStringLiteral("geometry"), QStringLiteral("Root pixels."),
                                      QStringLiteral("WxH+X+Y"), QStringLiteral("1280x720+0+0"));
    const QCommandLineOption mode(QStringLiteral("mode"),
                                  QStringLiteral("full, small, cursor, typing or still."),
                                  QStringLiteral("mode"), QStringLiteral("full"));
    const QCommandLineOption rate(QStringLiteral("rate"), QStringLiteral("Frames a second."),
                                  QStringLiteral("number"), QStringLiteral("60"));
    parser.addOptions({geometry, mode, rate});
    parser.process(application);

    const QRect rectangle = rectangleOf(parser.value(geometry));
    const auto chosen = modes.find(parser.value(mode));
    const int frames = parser.value(rate).toInt();
    if (rectangle.isEmpty() || chosen == modes.end() || frames <= 0) {
        return fail(QStringLiteral("bad value, see --help"));
    }
    auto window = PatternWindow::open(qEnvironmentVariable("DISPLAY"), rectangle, chosen->second);
    if (!window) {
        return fail(window.error());
    }
    PatternAnimation animation(std::move(*window), frames);
    if (chosen->second != PatternMode::Still) {
        animation.start();
    }
    waitForStop(signals.token());
    animation.freeze();
    QTextStream(stdout) << animation.lastFrame() << " frames sent, " << animation.missedDeadlines()
                        << " deadlines missed\n";
    return 0;
}
