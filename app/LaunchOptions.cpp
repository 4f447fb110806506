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

/** Parses X,Y or X,Y,WIDTHxHEIGHT. */
std::optional<AreaMove> areaMove(const QString &text)
{
    const bool isPlace = text.count(u',') == 1;
    const auto texts = areaTexts(isPlace ? text + QStringLiteral(",1x1") : text);
    if (!texts) {
        return std::nullopt;
    }
    const auto number = [&](std::size_t i) { return numberFromText((*texts)[i]); };
    return AreaMove{.x = *number(0),
                    .y = *number(1),
                    .width = isPlace ? std::nullopt : number(2),
                    .height = isPlace ? std::nullopt : number(3)};
}

/** Joins the lines of what the user typed, since the message must be a single line. */
std::unexpected<QString> oneLine(const QString &message)
{
    return std::unexpected(message.simplified());
}

using Done = std::expected<void, QString>;

void addOptions(QCommandLineParser &parser)
{
    for (const char *flag : {"share", "stop", "select", "save", "pause", "blank", "resume",
                             "toggle-pause", "status"}) {
        parser.addOption(QCommandLineOption(QLatin1String(flag)));
    }
    for (const char *valued :
         {"area", "move", "frame", "tray", "shortcuts", "output-window", "backend"}) {
        parser.addOption({QLatin1String(valued), {}, QStringLiteral("value")});
    }
    parser.addOption(QCommandLineOption(QStringList{QStringLiteral("h"), QStringLiteral("help")}));
    parser.addOption(
        QCommandLineOption(QStringList{QStringLiteral("v"), QStringLiteral("version")}));
}

bool isSet(const QCommandLineParser &parser, const char *name)
{
    return parser.isSet(QLatin1String(name));
}

std::optional<QString> valueOf(const QCommandLineParser &parser, const char *name)
{
    return isSet(parser, name) ? std::optional(parser.value(QLatin1String(name))) : std::nullopt;
}

std::optional<SessionOrder> orderIn(const QCommandLineParser &parser)
{
    for (const auto &[name, order] :
         {std::pair("pause", SessionOrder::Pause), std::pair("blank", SessionOrder::Blank),
          std::pair("resume", SessionOrder::Resume),
          std::pair("toggle-pause", SessionOrder::TogglePause)}) {
        if (isSet(parser, name)) {
            return order;
        }
    }
    return std::nullopt;
}

/** Whether the options can be used together. */
Done checkCombination(const QCommandLineParser &parser)
{
    constexpr std::array actions{"share", "stop",  "select", "move",
                                 "pause", "blank", "resume", "toggle-pause"};
    if (std::ranges::count_if(actions, [&](const char *name) { return isSet(parser, name); }) > 1) {
        return oneLine(LaunchOptions::tr(
            "Only one of --share, --stop, --select, --move, --pause, --blank, --resume and "
            "--toggle-pause can be used at a time."));
    }
    if (isSet(parser, "save") && !isSet(parser, "move")) {
        return oneLine(LaunchOptions::tr("--save needs --move."));
    }
    return {};
}

Done readAreas(const QCommandLineParser &parser, LaunchOptions &options)
{
    if (const auto text = valueOf(parser, "move")) {
        options.move = areaMove(*text);
        if (!options.move) {
            return oneLine(LaunchOptions::tr("'%1' is no place for the area. Use X,Y or "
                                             "X,Y,WIDTHxHEIGHT.")
                               .arg(*text));
        }
    }
    if (const auto text = valueOf(parser, "area")) {
        options.area = areaTexts(*text);
        if (!options.area) {
            return oneLine(
                LaunchOptions::tr("'%1' is not an area. An area is four numbers: X,Y,WIDTHxHEIGHT.")
                    .arg(*text));
        }
    }
    return {};
}

/** An option that has one of two values. */
struct Switch {
    const char *name;
    QLatin1String on;
    QLatin1String off;
    const char *otherwise; ///< what to say of another value
};

/** Null without the option. */
std::expected<std::optional<bool>, QString> readSwitch(const QCommandLineParser &parser,
                                                       const Switch &option)
{
    const auto value = valueOf(parser, option.name);
    if (value && *value != option.on && *value != option.off) {
        return oneLine(LaunchOptions::tr(option.otherwise).arg(*value));
    }
    return value ? std::optional(*value == option.on) : std::nullopt;
}

Done readSwitches(const QCommandLineParser &parser, LaunchOptions &options)
{
    const auto listed
        = readSwitch(parser,
                     {.name = "output-window",
                      .on = QLatin1String("managed"),
                      .off = QLatin1String("unlisted"),
                      .otherwise = QT_TRANSLATE_NOOP(
                          "glimmerpane::LaunchOptions",
                          "'%1' is not a kind of output window. Use managed or unlisted.")});
    const auto onOrOff = [&](const char *name, const char *otherwise) {
        return readSwitch(parser,
                          {.name = name,
                           .on = QLatin1String("on"),
                           .off = QLatin1String("off"),
                           .otherwise = otherwise});
    };
    const auto frame = onOrOff("frame",
                               QT_TRANSLATE_NOOP("glimmerpane::LaunchOptions",
                                                 "'%1' is neither on nor off, for --frame."));
    const auto tray = onOrOff(
        "tray",
        QT_TRANSLATE_NOOP("glimmerpane::LaunchOptions", "'%1' is neither on nor off, for --tray."));
    const auto shortcuts
        = onOrOff("shortcuts",
                  QT_TRANSLATE_NOOP("glimmerpane::LaunchOptions",
                                    "'%1' is neither on nor off, for --shortcuts."));
    for (const auto &value : {listed, frame, tray, shortcuts}) {
        if (!value) {
            return std::unexpected(value.error());
        }
    }
    options.listsOutput = *listed;
    options.frame = *frame;
    options.tray = *tray;
    options.shortcuts = *shortcuts;
    return {};
}

} // namespace

std::expected<LaunchOptions, QString> launchOptions(const QStringList &arguments)
{
    QCommandLineParser parser;
    addOptions(parser);
    addAreaOptions(parser);
    if (!parser.parse(QStringList(QStringLiteral("glimmerpane")) + arguments)) {
        return oneLine(parser.errorText());
    }
    if (!parser.positionalArguments().isEmpty()) {
        return oneLine(LaunchOptions::tr("Unexpected argument '%1'.")
                           .arg(parser.positionalArguments().front()));
    }
    const auto areas = areaOptions(parser);
    if (!areas) {
        return oneLine(areas.error());
    }
    LaunchOptions options{.area = std::nullopt,
                          .areas = *areas,
                          .share = isSet(parser, "share"),
                          .stop = isSet(parser, "stop"),
                          .select = isSet(parser, "select"),
                          .move = std::nullopt,
                          .save = isSet(parser, "save"),
                          .order = orderIn(parser),
                          .frame = std::nullopt,
                          .tray = std::nullopt,
                          .shortcuts = std::nullopt,
                          .status = isSet(parser, "status"),
                          .backend = valueOf(parser, "backend"),
                          .listsOutput = std::nullopt,
                          .help = isSet(parser, "help"),
                          .version = isSet(parser, "version")};
    for (const Done &done :
         {checkCombination(parser), readAreas(parser, options), readSwitches(parser, options)}) {
        if (!done) {
            return std::unexpected(done.error());
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
        "  --size WIDTHxHEIGHT      Give the area this size in pixels, around its centre,\n"
        "                           or a ratio of width to height, such as 16:9.\n"
        "  --save-as NAME           Store the area under a name.\n"
        "  --use NAME               Make the area of that name the current one.\n"
        "  --forget NAME            Forget the area of that name.\n"
        "  --areas [--json]         List the areas with names, one on each line, or as JSON.\n"
        "  --share                  Start sharing at once.\n"
        "  --stop                   Stop sharing.\n"
        "  --select                 Open the area selector.\n"
        "  --move X,Y[,WIDTHxHEIGHT]\n"
        "                           Move the area while it is shared; with --save, also\n"
        "                           store it.\n"
        "  --pause, --resume, --toggle-pause\n"
        "                           Keep the latest picture, or go on.\n"
        "  --blank                  Pause with a picture that says so.\n"
        "  --frame on|off           Show a frame around the area while it is shared, which\n"
        "                           the others do not see, with a handle to drag the area\n"
        "                           by; or show none. Remembered; off at first.\n"
        "  --tray on|off            Show an icon in the desktop's tray, where there\n"
        "                           is one, with a menu to share by; or show none.\n"
        "                           Remembered; off at first.\n"
        "  --shortcuts on|off       Have the desktop ask for keys that share or stop, pause\n"
        "                           or go on, and show or hide the frame; or use none.\n"
        "                           Remembered; off at first.\n"
        "  --status                 Print the stored area, whether one is being shared,\n"
        "                           which, whether it is paused and whether another\n"
        "                           program reads it, the frames shown in the last\n"
        "                           second and the frames dropped, the back end, and\n"
        "                           whether clicks are shown, as JSON.\n"
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
