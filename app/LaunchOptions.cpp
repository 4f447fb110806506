// SPDX-License-Identifier: MIT
#include "app/LaunchOptions.h"

#include "model/NumberText.h"

#include <QCommandLineParser>

#include <algorithm>

namespace glimmerpane
{

namespace
{

using AreaTexts = std::array<QString, 4>;

bool allNumbers(const AreaTexts &texts)
{
    return std::ranges::all_of(
        texts, [](const QString &text) { return numberFromText(text).has_value(); });
}

/** Parses X,Y,WIDTHxHEIGHT. An "x" may be part of a hexadecimal number, so each one is tried. */
std::optional<AreaTexts> areaTexts(const QString &text)
{
    const QStringList parts = text.split(u',');
    if (parts.size() != 3) {
        return std::nullopt;
    }
    const QString &size = parts[2];
    for (qsizetype at = size.indexOf(u'x'); at >= 0; at = size.indexOf(u'x', at + 1)) {
        AreaTexts texts{parts[0], parts[1], size.first(at), size.sliced(at + 1)};
        if (allNumbers(texts)) {
            return texts;
        }
    }
    return std::nullopt;
}

/** Joins the lines of what the user typed, since the message must be a single line. */
std::unexpected<QString> oneLine(const QString &message)
{
    return std::unexpected(message.simplified());
}

} // namespace

std::expected<LaunchOptions, QString> launchOptions(const QStringList &arguments)
{
    const QCommandLineOption area(QStringLiteral("area"), {}, QStringLiteral("area"));
    const QCommandLineOption share(QStringLiteral("share"));
    const QCommandLineOption stop(QStringLiteral("stop"));
    const QCommandLineOption select(QStringLiteral("select"));
    const QCommandLineOption status(QStringLiteral("status"));
    const QCommandLineOption outputWindow(QStringLiteral("output-window"), {},
                                          QStringLiteral("kind"));
    const QCommandLineOption backend(QStringLiteral("backend"), {}, QStringLiteral("name"));
    const QCommandLineOption help(QStringList{QStringLiteral("h"), QStringLiteral("help")});
    const QCommandLineOption version(QStringList{QStringLiteral("v"), QStringLiteral("version")});
    QCommandLineParser parser;
    parser.addOptions({area, share, stop, select, status, outputWindow, backend, help, version});
    if (!parser.parse(QStringList(QStringLiteral("glimmerpane")) + arguments)) {
        return oneLine(parser.errorText());
    }
    if (!parser.positionalArguments().isEmpty()) {
        return oneLine(LaunchOptions::tr("Unexpected argument '%1'.")
                           .arg(parser.positionalArguments().front()));
    }
    if (parser.isSet(share) + parser.isSet(stop) + parser.isSet(select) > 1) {
        return oneLine(
            LaunchOptions::tr("Only one of --share, --stop and --select can be used at a time."));
    }
    LaunchOptions options{.area = std::nullopt,
                          .share = parser.isSet(share),
                          .stop = parser.isSet(stop),
                          .select = parser.isSet(select),
                          .status = parser.isSet(status),
                          .backend = parser.isSet(backend) ? std::optional(parser.value(backend))
                                                           : std::nullopt,
                          .listsOutput = std::nullopt,
                          .help = parser.isSet(help),
                          .version = parser.isSet(version)};
    if (parser.isSet(area)) {
        options.area = areaTexts(parser.value(area));
        if (!options.area) {
            return oneLine(
                LaunchOptions::tr("'%1' is not an area. An area is four numbers: X,Y,WIDTHxHEIGHT.")
                    .arg(parser.value(area)));
        }
    }
    if (parser.isSet(outputWindow)) {
        const QString kind = parser.value(outputWindow);
        if (kind == u"managed") {
            options.listsOutput = true;
        } else if (kind == u"unlisted") {
            options.listsOutput = false;
        } else {
            return oneLine(
                LaunchOptions::tr("'%1' is not a kind of output window. Use managed or unlisted.")
                    .arg(kind));
        }
    }
    return options;
}

QString helpText()
{
    return LaunchOptions::tr(
        "Usage: glimmerpane [options]\n"
        "Shares a part of the screen in a video call: share the window\n"
        "\"Glimmerpane - Output\" there.\n"
        "\n"
        "Options:\n"
        "  --area X,Y,WIDTHxHEIGHT  Set and save the area, in points; X and Y are its\n"
        "                           bottom-left corner, counted from the bottom-left\n"
        "                           corner of the primary display.\n"
        "  --share                  Start sharing at once.\n"
        "  --stop                   Stop sharing.\n"
        "  --select                 Open the area selector.\n"
        "  --status                 Print the area, whether it is being shared, the\n"
        "                           frames shown in the last second and the frames\n"
        "                           dropped, the back end, and whether clicks are\n"
        "                           shown, as JSON.\n"
        "  --output-window=managed  Let the window manager list the output window, for\n"
        "                           programs that offer only what it lists.\n"
        "  --backend=NAME           Read the screen by gnome, wlroots, kwin, portal or\n"
        "                           x11, instead of the first that works.\n"
        "  -h, --help               Print this and exit.\n"
        "  -v, --version            Print the version and exit.\n"
        "\n"
        "If Glimmerpane is already running, it does what is asked; without options its\n"
        "window comes to the front. The exit code is 0, 1 (failed) or 2 (usage).\n");
}

} // namespace glimmerpane
