// SPDX-License-Identifier: MIT
#include "app/SessionInterface.h"

#include "services/Json.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QLocale>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <utility>

namespace glimmerpane
{

/** x, y, width and height in points, as on the bus; any bits make a value that equals itself. */
struct BusArea {
    std::array<double, 4> numbers{};

    friend bool operator==(const BusArea &one, const BusArea &other)
    {
        using Bits = std::array<std::uint64_t, 4>;
        return std::bit_cast<Bits>(one.numbers) == std::bit_cast<Bits>(other.numbers);
    }
};

// Qt's names for what it puts on the bus.

QDBusArgument &operator<<(QDBusArgument &argument, const BusArea &area)
{
    argument.beginStructure();
    for (const double number : area.numbers) {
        argument << number;
    }
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, BusArea &area)
{
    argument.beginStructure();
    for (double &number : area.numbers) {
        argument >> number;
    }
    argument.endStructure();
    return argument;
}

namespace
{

using BusAreas = QMap<QString, BusArea>;
using Wanted = std::expected<LaunchOptions, QString>;

const QString interfaceName = QStringLiteral("io.github.glimmerpane.Glimmerpane1");

BusArea onBus(const CaptureFrame &area)
{
    return {{area.x, area.y, area.width, area.height}};
}

/** A method's results, if it succeeds. */
using Results = QVariantList (*)(const CommandResult &);

QVariantList nothing(const CommandResult & /*result*/)
{
    return {};
}

/** From what --areas --json prints. */
QVariantList namedAreas(const CommandResult &result)
{
    BusAreas areas;
    for (const auto &entry : nlohmann::json::parse(result.output.toStdString())) {
        const auto &area = entry["area"];
        areas[QString::fromStdString(entry["name"])]
            = {{area["x"], area["y"], area["width"], area["height"]}};
    }
    return {QVariant::fromValue(areas)};
}

auto answering(const CallReply &reply, Results results = nothing)
{
    return [reply, results](const CommandResult &result) {
        switch (result.exitCode) {
        case ExitCode::Succeeded:
            reply(results(result));
            break;
        case ExitCode::Failed:
            reply(std::unexpected(CallError{.name = interfaceName + QStringLiteral(".Error.Failed"),
                                            .text = result.error}));
            break;
        case ExitCode::Misused:
            reply(std::unexpected(invalidArguments(result.error)));
            break;
        }
    };
}

template<typename T>
LaunchOptions asking(T LaunchOptions::*option, std::type_identity_t<T> value)
{
    LaunchOptions options;
    options.*option = std::move(value);
    return options;
}

LaunchOptions askingAbout(std::optional<QString> AreaOptions::*option, const QVariant &name)
{
    LaunchOptions options;
    options.areas.*option = name.toString();
    return options;
}

Wanted area(const QVariantList &numbers)
{
    const auto text = [&](qsizetype i) {
        return QString::number(numbers[i].toDouble(), 'g', QLocale::FloatingPointShortest);
    };
    return asking(&LaunchOptions::area, std::array{text(0), text(1), text(2), text(3)});
}

Wanted move(const QVariantList &arguments)
{
    const bool isResized = arguments.size() > 3;
    const auto size = [&](qsizetype i) {
        return isResized ? std::optional(arguments[i].toDouble()) : std::nullopt;
    };
    auto options = asking(&LaunchOptions::move,
                          AreaMove{.x = arguments[0].toDouble(),
                                   .y = arguments[1].toDouble(),
                                   .width = size(2),
                                   .height = size(3)});
    options.save = arguments.back().toBool();
    return options;
}

bool isFinite(const QVariant &value)
{
    return value.typeId() != QMetaType::Double || std::isfinite(value.toDouble());
}

/** What a method asks for, as a command line would. */
struct Order {
    const char *name;
    std::vector<ServedArgument> takes;
    std::function<Wanted(const QVariantList &arguments)> options;
    std::vector<ServedArgument> gives;
    Results results;
};

std::vector<Order> orders()
{
    const auto argument = [](const char *signature, const char *name) {
        return ServedArgument{.signature = QLatin1String(signature), .name = QLatin1String(name)};
    };
    const auto order
        = [](const char *name, const std::vector<ServedArgument> &takes, auto options) {
              return Order{.name = name,
                           .takes = takes,
                           .options = std::move(options),
                           .gives = {},
                           .results = nothing};
          };
    const auto simple = [&](const char *name, const LaunchOptions &options) {
        return order(name, {}, [options](const QVariantList &) { return options; });
    };
    const auto x = argument("d", "x");
    const auto y = argument("d", "y");
    const auto width = argument("d", "width");
    const auto height = argument("d", "height");
    const auto save = argument("b", "save");
    const auto size = [](const QVariantList &text) {
        return launchOptions({QStringLiteral("--size=") + text[0].toString()});
    };
    const auto named = [&](const char *method, std::optional<QString> AreaOptions::*option) {
        return order(method, {argument("s", "name")},
                     [option](const QVariantList &name) { return askingAbout(option, name[0]); });
    };
    LaunchOptions list;
    list.areas.list = list.areas.json = true;
    auto listAreas = simple("ListAreas", list);
    listAreas.gives = {argument("a{s(dddd)}", "areas")};
    listAreas.results = namedAreas;
    return {simple("Start", asking(&LaunchOptions::share, true)),
            simple("Stop", asking(&LaunchOptions::stop, true)),
            simple("Select", asking(&LaunchOptions::select, true)),
            order("Move", {x, y, save}, move),
            order("MoveAndResize", {x, y, width, height, save}, move),
            order("SetArea", {x, y, width, height}, area),
            order("SetSize", {argument("s", "size")}, size),
            simple("Pause", asking(&LaunchOptions::order, SessionOrder::Pause)),
            simple("Blank", asking(&LaunchOptions::order, SessionOrder::Blank)),
            simple("Resume", asking(&LaunchOptions::order, SessionOrder::Resume)),
            simple("TogglePause", asking(&LaunchOptions::order, SessionOrder::TogglePause)),
            named("SaveAs", &AreaOptions::saveAs),
            named("Use", &AreaOptions::use),
            named("Forget", &AreaOptions::forget),
            listAreas};
}

ServedMethod methodOf(const Order &order, Commands &commands)
{
    const auto call = [&commands, options = order.options,
                       results = order.results](const auto &arguments, const CallReply &reply) {
        if (!std::ranges::all_of(arguments, isFinite)) {
            reply(std::unexpected(invalidArguments(QStringLiteral("A number is not finite."))));
            return;
        }
        if (const Wanted wanted = options(arguments)) {
            commands.obey(*wanted, answering(reply, results));
        } else {
            reply(std::unexpected(invalidArguments(wanted.error())));
        }
    };
    return {.name = QLatin1String(order.name),
            .takes = order.takes,
            .gives = order.gives,
            .call = call};
}

std::vector<ServedMethod> methods(Commands &commands)
{
    std::vector<ServedMethod> methods;
    for (const Order &order : orders()) {
        methods.push_back(methodOf(order, commands));
    }
    methods.push_back({.name = QStringLiteral("Show"),
                       .takes = {},
                       .gives = {},
                       .call = [&commands](const auto &, const CallReply &reply) {
                           commands.obey(CommandLine{}, answering(reply));
                       }});
    methods.push_back({.name = QStringLiteral("Quit"),
                       .takes = {},
                       .gives = {},
                       .call = [](const auto &, const CallReply &reply) {
                           reply(QVariantList());
                           // Also ends the event loop of an open alert.
                           QCoreApplication::exit(0);
                       }});
    return methods;
}

std::vector<ServedProperty> properties(MainViewModel &model, AreaFrame &frame, Commands &commands)
{
    const auto property
        = [](const char *name, const char *signature, PropertyChange change, auto value) {
              return ServedProperty{.name = QLatin1String(name),
                                    .signature = QLatin1String(signature),
                                    .change = change,
                                    .value = std::move(value),
                                    .set = nullptr};
          };
    const auto sharedArea = [&model] {
        QList<double> numbers;
        if (const auto shared = model.sharedFrame()) {
            std::ranges::copy(onBus(*shared).numbers, std::back_inserter(numbers));
        }
        return QVariant::fromValue(numbers);
    };
    const auto watched = [&model] {
        const auto isWatched = model.isWatched();
        return QVariant(isWatched ? *isWatched ? QStringLiteral("yes") : QStringLiteral("no")
                                  : QStringLiteral("unknown"));
    };
    auto isFramed = property("Frame", "b", PropertyChange::Announced,
                             [&frame] { return QVariant(frame.isOn()); });
    isFramed.set = [&commands](const QVariant &value, const CallReply &reply) {
        commands.obey(asking(&LaunchOptions::frame, value.toBool()), answering(reply));
    };
    return {property("Sharing", "b", PropertyChange::Announced,
                     [&model] { return QVariant(model.isSharingWindowOpen()); }),
            property("Paused", "b", PropertyChange::Announced,
                     [&model] { return QVariant(model.isPaused()); }),
            property("Area", "(dddd)", PropertyChange::Announced,
                     [&model] { return QVariant::fromValue(onBus(model.currentFrame())); }),
            property("SharedArea", "ad", PropertyChange::Announced, sharedArea),
            property("Watched", "s", PropertyChange::Announced, watched),
            isFramed,
            property("Backend", "s", PropertyChange::Never,
                     [&commands] { return QVariant(commands.backend()); }),
            property("Clicks", "s", PropertyChange::Never,
                     [&commands] { return QVariant(commands.clicks()); }),
            property("FramesPerSecond", "x", PropertyChange::Silent,
                     [&model] {
                         return QVariant::fromValue<qlonglong>(
                             model.captureStatistics().framesInLastSecond);
                     }),
            property("Drops", "x", PropertyChange::Silent, [&model] {
                return QVariant::fromValue<qlonglong>(model.captureStatistics().dropped);
            })};
}

} // namespace

void serveSession(ServedObject &object, MainViewModel &model, AreaFrame &frame, Commands &commands)
{
    qDBusRegisterMetaType<BusArea>();
    qDBusRegisterMetaType<BusAreas>();
    object.add({.name = interfaceName,
                .methods = methods(commands),
                .properties = properties(model, frame, commands)});
    const auto announce = [&object] { object.announceChanges(); };
    QObject::connect(&model, &MainViewModel::objectWillChange, &object, announce);
    QObject::connect(&model, &MainViewModel::sharedFrameChanged, &object, announce);
    QObject::connect(&model, &MainViewModel::pausedChanged, &object, announce);
    QObject::connect(&model, &MainViewModel::watchedChanged, &object, announce);
    QObject::connect(&frame, &AreaFrame::turned, &object, announce);
}

} // namespace glimmerpane
