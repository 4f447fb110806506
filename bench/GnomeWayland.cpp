// SPDX-License-Identifier: MIT
#include "bench/Measurement.h"
#include "rig/GnomeSession.h"
#include "rig/PatternAnimation.h"
#include "rig/ProcessUsage.h"
#include "rig/WaitFor.h"

namespace glimmerpane::bench
{

namespace
{

/**
 * While the costs are measured, the animation is so slow that a compositor without hardware shows
 * and records every frame: only then is its share, and Xwayland's, the same with a tool and
 * without.
 */
struct Area {
    QSize size;
    int slowRate; ///< frames a second

    QString text() const { return u"%1x%2"_s.arg(size.width()).arg(size.height()); }
};
constexpr Area areas[] = {{{1280, 720}, 12}, {{1920, 1080}, 6}};
constexpr const char *toolNames[] = {"Glimmerpane", "GStreamer"};
constexpr int topBar = 40; ///< of the shell, which nothing can cover; and some room

/** What a run gives, for each size and tool. */
struct Column {
    const char *name;
    const char *counted;
    int decimals = 2;
};
constexpr Column columns[] = {
    {"Frames shown a second",
     "different frames of an animation with 60 a second in the tool's window", 1},
    {"Program, ms a frame", "processor time of the tool for each frame shown of a slower one"},
    {"Xwayland, ms a frame", "processor time of Xwayland beyond that for the animation alone"},
    {"Compositor, ms a frame", "processor time of gnome-shell beyond the same"},
    {"Latency, ms", "from a change of a colour to the tool's window, median"},
    {"Latency (95 %), ms", "the same, 95 % mark"},
    {"Unchanging screen, ms a second", "processor time of the tool and Xwayland"},
    {"Compositor there, ms a second", "processor time of gnome-shell beyond that without the tool"},
};
constexpr size_t programColumn = 1;
constexpr size_t serverColumn = 2;

/** A GNOME session with an area that the numbered animation fills. */
struct GnomeStage {
    GnomeStage(const Measurement &given, const Area &shown)
        : measurement(given)
        , slowRate(shown.slowRate)
        , area(QPoint(0, topBar), shown.size)
        , session({.monitors = {shown.size + QSize(0, topBar)}})
        , client(required(XClient::connect(session.displayName())))
    {
        play(slowRate);
    }

    void play(int rate)
    {
        animation.reset();
        animation.emplace(required(PatternWindow::open(session.displayName(), {.rectangle = area})),
                          rate);
        animation->start();
        measurement.rest(std::chrono::seconds(1)); // until everything runs evenly
    }

    Spent spend(pid_t tool, std::chrono::milliseconds time) const;
    CapturedWindow awaitWindow(const ChildProcess &process, const QString &title,
                               PictureOf source) const;
    ChildProcess startTool(bool isOurs, std::optional<GnomeScreenCast> &recording) const;
    std::vector<double> measureTool(bool isOurs);

    const Measurement &measurement;
    const int slowRate;
    const QRect area; ///< desktop pixels
    GnomeSession session;
    XClient client;
    std::optional<PatternAnimation> animation;
};

/** A pid of 0 stands for no tool. */
Spent GnomeStage::spend(pid_t tool, std::chrono::milliseconds time) const
{
    const auto cpu = [](pid_t of) { return of ? required(ProcessUsage::of(of)).cpu() : 0; };
    const auto now = [&] {
        return Spent{.seconds = std::chrono::duration<double>(
                                    std::chrono::steady_clock::now().time_since_epoch())
                                    .count(),
                     .server = cpu(session.serverProcess()),
                     .compositor = cpu(session.shellProcess()),
                     .program = cpu(tool),
                     .sourceFrames = static_cast<double>(animation->lastFrame())};
    };
    const Spent before = now();
    measurement.rest(time);
    Spent spent = now();
    for (double Spent::*member : {&Spent::seconds, &Spent::server, &Spent::compositor,
                                  &Spent::program, &Spent::sourceFrames}) {
        spent.*member -= before.*member;
    }
    return spent;
}

/** Minimised, so that only who views it pays for showing it; and once the animation is in it. */
CapturedWindow GnomeStage::awaitWindow(const ChildProcess &process, const QString &title,
                                       PictureOf source) const
{
    std::optional<xcb_window_t> window;
    const auto isThere = [&] {
        for (const xcb_window_t each : listWindows(client, Listing::All)) {
            if (titleOf(client, each).startsWith(title) && isViewable(client, each)) {
                window = each;
            }
        }
        return window.has_value();
    };
    if (!waitFor(isThere, patience)) {
        throw Failure(u"there is no window \"%1\"; the tool said: %2"_s.arg(
            title, QString::fromLocal8Bit(process.output()).simplified()));
    }
    constexpr uint32_t iconicState = 3; // ICCCM 4.1.4
    sendMessage(client, *window, "WM_CHANGE_STATE", iconicState, client.root());
    auto view = required(CapturedWindow::open(client, *window, source));
    awaitMotion(view);
    return view;
}

/** The values of the columns. */
std::vector<double> GnomeStage::measureTool(bool isOurs)
{
    const auto alone = [this] { return spend(0, measurement.extent.phase / 2); };
    const Spent before = alone();
    Spent spent;
    Spent still;
    SeenFrames seen;
    SeenFrames fastSeen;
    std::vector<double> latencies;
    {
        std::optional<GnomeScreenCast> recording;
        const auto process = startTool(isOurs, recording);
        const auto source = isOurs ? PictureOf::Composite : PictureOf::Screen;
        const auto view
            = awaitWindow(process, isOurs ? u"Glimmerpane - Output"_s : u"gst-launch"_s, source);
        measurement.rest(std::chrono::seconds(1));
        spent = spend(process.pid(), measurement.extent.phase * 3 / 4);
        const auto count = [&] {
            return countFrames(session.displayName(), view, {}, measurement.extent.phase / 2);
        };
        seen = count();
        play(PatternAnimation::defaultRate);
        fastSeen = count();
        animation->freeze();
        latencies = measureLatency(client,
                                   {.output = view.window(),
                                    .area = area,
                                    .patch = QRect(area.center(), QSize(160, 80)),
                                    .changes = measurement.extent.changes / 4,
                                    .pause = std::chrono::microseconds(250),
                                    .source = source});
        measurement.rest(std::chrono::seconds(2));
        still = spend(process.pid(), measurement.extent.phase * 3 / 4);
    }
    measurement.rest(std::chrono::seconds(1));
    const Spent calm = alone();
    play(slowRate);
    const FrameCost cost = costOf(spent, seen, before, alone());
    const auto beyondCalm = [&](double Spent::*share) {
        return still.*share / still.seconds - calm.*share / calm.seconds;
    };
    return {fastSeen.rate(),
            cost.program,
            cost.server,
            cost.compositor,
            median(latencies),
            quantile(latencies, 0.95),
            beyondCalm(&Spent::program) + beyondCalm(&Spent::server),
            beyondCalm(&Spent::compositor)};
}

/** Both have the pointer in the picture, as the program asks for it on GNOME 43. */
ChildProcess GnomeStage::startTool(bool isOurs, std::optional<GnomeScreenCast> &recording) const
{
    ChildProcess::Options tool{
        .program = measurement.executable,
        .arguments = {u"--backend=gnome"_s,
                      u"--area=0,0,%1x%2"_s.arg(area.width()).arg(area.height()), u"--share"_s},
        .environment = session.environment()};
    if (!isOurs) {
        recording.emplace(
            session.bus(),
            GnomeScreenCast::Source{.area = area, .pointer = GnomeScreenCast::Pointer::Embedded});
        recording->start();
        tool.program = u"gst-launch-1.0"_s;
        // The converter only names the pixels' shape, which the sink insists on; it passes the
        // buffers on.
        tool.arguments = u"-q pipewiresrc path=%1 ! videoconvert ! ximagesink sync=false"_s
                             .arg(recording->node())
                             .split(u' ');
    }
    return required(ChildProcess::start(tool));
}

void writeTable(const QDir &folder, const std::vector<Figure> &figures, int runs)
{
    QString text = u"# GNOME on Wayland\n\n%1\n\n| Area | Tool"_s.arg(
        machineText(u"medians of %1 runs"_s.arg(runs), u"gnome-shell"_s));
    QString line = u"|---|---"_s;
    for (const Column &column : columns) {
        text += u" | "_s + QString::fromLatin1(column.name);
        line += u"|---"_s;
    }
    text += u" |\n"_s + line + u"|\n"_s;
    auto figure = figures.begin();
    for (const Area &area : areas) {
        for (const char *tool : toolNames) {
            text += u"| %1 | %2 |"_s.arg(area.text(), QString::fromLatin1(tool));
            for (size_t i = 0; i < std::size(columns); ++i) {
                text += u" %1 |"_s.arg((figure++)->measured());
            }
            text += u'\n';
        }
    }
    writeText(folder.filePath(u"gnome.md"_s), text);
}

} // namespace

std::vector<Figure> measureGnome(const Measurement &measurement)
{
    std::vector<Figure> figures;
    for (const Area &area : areas) {
        for (const char *tool : toolNames) {
            for (const Column &column : columns) {
                figures.push_back(
                    {.name = u"GNOME on Wayland, %1, %2: %3"_s.arg(
                         area.text(), QString::fromLatin1(tool), QString::fromLatin1(column.name)),
                     .counted = QString::fromLatin1(column.counted),
                     .decimals = column.decimals});
            }
        }
    }
    figures = measurement.repeat(figures, [&] {
        std::vector<double> values;
        for (const Area &area : areas) {
            GnomeStage stage(measurement, area);
            for (const bool isOurs : {true, false}) {
                const auto row = stage.measureTool(isOurs);
                values.insert(values.end(), row.begin(), row.end());
            }
        }
        return values;
    });
    writeTable(measurement.folder, figures, measurement.extent.runs);
    std::vector<Figure> parts;
    for (size_t i = 0; i < std::size(areas); ++i) {
        const auto own = [&](size_t tool) {
            const auto *const first
                = &figures[(i * std::size(toolNames) + tool) * std::size(columns)];
            return first[programColumn].value + first[serverColumn].value;
        };
        parts.push_back({.name = u"GNOME on Wayland, %1: part of GStreamer's time per frame"_s.arg(
                             areas[i].text()),
                         .counted = u"program and Xwayland"_s,
                         .atMost = 0.6,
                         .value = own(0) / own(1)});
    }
    std::ranges::copy(parts, std::back_inserter(figures));
    return figures;
}

} // namespace glimmerpane::bench
