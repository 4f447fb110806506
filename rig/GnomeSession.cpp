// SPDX-License-Identifier: MIT
#include "rig/GnomeSession.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include <algorithm>

namespace glimmerpane::testing
{

namespace
{

constexpr std::chrono::seconds limit{30};
const QString shellService = QStringLiteral("org.gnome.Shell");
const QString shellPath = QStringLiteral("/org/gnome/Shell");
const QString properties = QStringLiteral("org.freedesktop.DBus.Properties");
const QString busName = QStringLiteral("gnome-session");
/** The shell lets only a portal's back end list the windows. */
const QString portalService = QStringLiteral("org.freedesktop.impl.portal.desktop.gtk");

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

GnomeSession::GnomeSession(const Options &options)
    : WaylandDesktop(QStringLiteral("GNOME"))
    , monitors_(options.monitors.size())
{
    bus_ = QDBusConnection::connectToBus(busAddress(), busName);
    require(bus_->registerService(portalService), "a portal's name is taken");
    writeSettings(options.settings);
    if (options.scale != 1) {
        writeMonitor(options.monitors.front(), options.scale);
    }
    startShell(options.monitors);
    findDisplay();
    joinBus();
    showOverview(false);
}

GnomeSession::~GnomeSession()
{
    QDBusConnection::disconnectFromBus(busName);
}

void GnomeSession::writeSettings(const QByteArray &settings)
{
    setVariable("GSETTINGS_BACKEND", QStringLiteral("keyfile"));
    const QString folder = environment().value(QStringLiteral("XDG_CONFIG_HOME"))
        + QStringLiteral("/glib-2.0/settings");
    QDir().mkpath(folder);
    const QByteArray all = "[org/gnome/desktop/notifications]\nshow-banners=false\n" + settings;
    QFile file(folder + QStringLiteral("/keyfile"));
    require(file.open(QIODevice::WriteOnly) && file.write(all) == all.size(),
            "cannot write the session's settings");
}

/** As the shell stores what the user has chosen for a monitor. */
void GnomeSession::writeMonitor(const QSize &monitor, double scale)
{
    const QString text
        = QStringLiteral("<monitors version='2'><configuration><logicalmonitor>"
                         "<x>0</x><y>0</y><scale>%1</scale><primary>yes</primary><monitor>"
                         "<monitorspec><connector>Meta-0</connector><vendor>MetaVendor</vendor>"
                         "<product>MetaVirtualMonitor</product><serial>0x00</serial></monitorspec>"
                         "<mode><width>%2</width><height>%3</height><rate>60</rate></mode>"
                         "</monitor></logicalmonitor></configuration></monitors>")
              .arg(scale)
              .arg(monitor.width())
              .arg(monitor.height());
    QFile file(environment().value(QStringLiteral("XDG_CONFIG_HOME"))
               + QStringLiteral("/monitors.xml"));
    require(file.open(QIODevice::WriteOnly) && file.write(text.toUtf8()) > 0,
            "cannot write the monitor's scale");
}

void GnomeSession::startShell(const std::vector<QSize> &monitors)
{
    QStringList arguments{QStringLiteral("--headless"), QStringLiteral("--wayland"),
                          QStringLiteral("--wayland-display"), QStringLiteral("wayland-0")};
    for (const auto &size : monitors) {
        arguments << QStringLiteral("--virtual-monitor")
                  << QStringLiteral("%1x%2").arg(size.width()).arg(size.height());
    }
    shell_ = required(ChildProcess::start({.program = QStringLiteral("gnome-shell"),
                                           .arguments = arguments,
                                           .environment = compositorEnvironment()}));
    // It says so once its first animation is over; the names on the bus are there long before.
    const auto isReady = [this] { return shellOutput().contains("GNOME Shell started at"); };
    if (!waitFor([&] { return isReady() || !shell_.isRunning(); }, limit) || !isReady()) {
        throw Failure(QStringLiteral("gnome-shell did not start: ")
                      + QString::fromLocal8Bit(shellOutput()));
    }
}

void GnomeSession::findDisplay()
{
    const QRegularExpression said(QStringLiteral("public X11 display (:[0-9]+)"));
    const QDir folder(runtimeFile({}));
    const auto files
        = folder.entryList({QStringLiteral(".mutter-Xwaylandauth.*")}, QDir::Files | QDir::Hidden);
    require(files.size() == 1, "mutter made no authority file for Xwayland");
    enterDisplay(said.match(QString::fromLocal8Bit(shellOutput())).captured(1),
                 folder.filePath(files.front()));
}

pid_t GnomeSession::serverProcess() const
{
    const QString tasks = QStringLiteral("/proc/%1/task").arg(shell_.pid());
    for (const QString &task : QDir(tasks).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        for (const QByteArray &child :
             contentOf(QStringLiteral("%1/%2/children").arg(tasks, task)).split(' ')) {
            if (contentOf(QStringLiteral("/proc/%1/comm").arg(child.toInt())) == "Xwayland\n") {
                return child.toInt();
            }
        }
    }
    throw Failure(QStringLiteral("there is no Xwayland"));
}

void GnomeSession::joinBus()
{
    // What the bus starts from now on, such as a portal, belongs to the session.
    using Variables = QMap<QString, QString>;
    qDBusRegisterMetaType<Variables>();
    Variables variables;
    for (const char *name : {"DISPLAY", "XAUTHORITY"}) {
        const QString key = QString::fromLatin1(name);
        variables[key] = environment().value(key);
    }
    call(*bus_, QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
         QStringLiteral("org.freedesktop.DBus"), QStringLiteral("UpdateActivationEnvironment"),
         {QVariant::fromValue(variables)});
    const auto answers = [this] {
        try {
            windows();
            return true;
        } catch (const Failure &) {
            return false; // the shell has not yet seen who we are
        }
    };
    require(waitFor(answers, limit), "gnome-shell does not list its windows");
}

std::vector<GnomeSession::ListedWindow> GnomeSession::windows() const
{
    const auto service = QStringLiteral("org.gnome.Shell.Introspect");
    const auto reply = call(*bus_, service, QStringLiteral("/org/gnome/Shell/Introspect"), service,
                            QStringLiteral("GetWindows"));
    const auto found
        = qdbus_cast<QMap<qulonglong, QVariantMap>>(reply.value(0).value<QDBusArgument>());
    std::vector<ListedWindow> windows;
    for (auto window = found.begin(); window != found.end(); ++window) {
        const auto value
            = [&](const char *name) { return window->value(QString::fromLatin1(name)); };
        windows.push_back({.id = window.key(),
                           .title = value("title").toString(),
                           .application = value("app-id").toString(),
                           .windowClass = value("wm-class").toString(),
                           .isHidden = value("is-hidden").toBool(),
                           .hasFocus = value("has-focus").toBool()});
    }
    return windows;
}

std::optional<GnomeSession::ListedWindow> GnomeSession::window(const QString &title) const
{
    const auto all = windows();
    const auto found = std::ranges::find(all, title, &ListedWindow::title);
    return found == all.end() ? std::nullopt : std::optional(*found);
}

GnomeStream GnomeSession::recordMonitor(int index, GnomeScreenCast::Pointer pointer) const
{
    return {*bus_,
            runtimeFile(QStringLiteral("pipewire-0")),
            {.monitor = QStringLiteral("Meta-%1").arg(index), .pointer = pointer}};
}

GnomeStream GnomeSession::recordWindow(quint64 id) const
{
    return {*bus_, runtimeFile(QStringLiteral("pipewire-0")), {.window = id}};
}

GnomeInput GnomeSession::input(int monitor) const
{
    return {*bus_, QStringLiteral("Meta-%1").arg(monitor)};
}

GnomeSession::PortalDialog GnomeSession::portalDialog() const
{
    constexpr int firstOfTheOtherKind = 47;
    const int version = shellProperty("ShellVersion").toString().section(u'.', 0, 0).toInt();
    if (version < firstOfTheOtherKind) {
        return {.place = {380, 226, 520, 300},
                .cancel = {430, 249},
                .share = {851, 249},
                .secondWindow = {600, 457},
                .firstMonitor = QPoint(600, 402),
                .secondMonitor = {600, 457}};
    }
    return {.place = {310, 126, 660, 500},
            .cancel = {360, 149},
            .share = {922, 149},
            .secondWindow = {600, 325},
            .firstMonitor = monitors_ > 1 ? std::optional(QPoint(530, 445)) : std::nullopt,
            .secondMonitor = {780, 440}};
}

bool GnomeSession::isPortalDialogShown() const
{
    return std::ranges::any_of(windows(), [](const auto &window) {
        return window.application.contains(u"portal") || window.windowClass.contains(u"portal");
    });
}

QVariant GnomeSession::shellProperty(const char *name) const
{
    return call(*bus_, shellService, shellPath, properties, QStringLiteral("Get"),
                {shellService, QString::fromLatin1(name)})
        .value(0)
        .value<QDBusVariant>()
        .variant();
}

bool GnomeSession::isOverviewShown() const
{
    return shellProperty("OverviewActive").toBool();
}

void GnomeSession::showOverview(bool isShown) const
{
    call(*bus_, shellService, shellPath, properties, QStringLiteral("Set"),
         {shellService, QStringLiteral("OverviewActive"),
          QVariant::fromValue(QDBusVariant(isShown))});
    require(waitFor([&] { return isOverviewShown() == isShown; }, limit),
            "gnome-shell does not change to or from the overview");
}

} // namespace glimmerpane::testing
