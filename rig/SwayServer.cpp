// SPDX-License-Identifier: MIT
#include "rig/SwayServer.h"

#include "rig/DisplayEnvironment.h"
#include "rig/WaitFor.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <unistd.h>

namespace glimmerpane::testing
{

namespace
{

// Sway refuses to run as root, and XWayland serves only the user who started it, unless told.
constexpr const char *ordinaryUser = "65534";

QString configuration(QSize screen)
{
    return QStringLiteral(
               "output HEADLESS-1 mode --custom %1x%2@60Hz\n"
               "output HEADLESS-1 bg #336699 solid_color\n"
               "default_border none\n"
               "exec xhost +si:localuser:root && echo $DISPLAY $WAYLAND_DISPLAY $SWAYSOCK"
               " > $XDG_RUNTIME_DIR/started\n")
        .arg(screen.width())
        .arg(screen.height());
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/** Of sway, which writes its sockets and logs into the folder. */
QProcessEnvironment startEnvironment(const QString &folder)
{
    auto environment = environmentOf({});
    environment.remove(QStringLiteral("DISPLAY"));
    for (const auto &[name, value] :
         {std::pair("XDG_RUNTIME_DIR", folder), std::pair("HOME", folder),
          std::pair("WLR_BACKENDS", QStringLiteral("headless")),
          std::pair("WLR_RENDERER", QStringLiteral("pixman")),
          std::pair("WLR_LIBINPUT_NO_DEVICES", QStringLiteral("1"))}) {
        environment.insert(QString::fromLatin1(name), value);
    }
    return environment;
}

/** What runs the rest of a command as an ordinary user, who gets the folder. */
Result<QStringList> asOrdinaryUser(const QString &folder)
{
    if (geteuid() != 0) {
        return QStringList();
    }
    const QString user = QString::fromLatin1(ordinaryUser);
    if (chown(qPrintable(folder), user.toUInt(), user.toUInt()) != 0) {
        return failure(QStringLiteral("cannot give sway its folder"));
    }
    return QStringList{QStringLiteral("setpriv"), QStringLiteral("--reuid=") + user,
                       QStringLiteral("--regid=") + user, QStringLiteral("--clear-groups"),
                       QStringLiteral("--inh-caps=-all")};
}

} // namespace

Result<SwayServer> SwayServer::start(QSize screen)
{
    SwayServer server;
    server.folder_ = std::make_unique<QTemporaryDir>();
    const QString folder = server.folder_->path();
    QFile config(folder + QStringLiteral("/config"));
    if (!config.open(QIODevice::WriteOnly) || config.write(configuration(screen).toUtf8()) < 0) {
        return failure(QStringLiteral("cannot write sway's configuration"));
    }
    config.close();
    auto command = asOrdinaryUser(folder);
    if (!command) {
        return failure(command.error());
    }
    *command += {QStringLiteral("sway"), QStringLiteral("-c"), config.fileName()};
    const QString program = command->takeFirst();
    auto process = ChildProcess::start(
        {.program = program, .arguments = *command, .environment = startEnvironment(folder)});
    if (!process) {
        return failure(process.error());
    }
    const auto started = [&] { return contentOf(folder + QStringLiteral("/started")); };
    constexpr std::chrono::seconds limit(20);
    if (!waitFor([&] { return started().endsWith('\n') || !process->isRunning(); }, limit)
        || !started().endsWith('\n')) {
        return failure(QStringLiteral("sway did not start: %1")
                           .arg(QString::fromLocal8Bit(process->output())));
    }
    const QStringList names = QString::fromLocal8Bit(started().trimmed()).split(u' ');
    server.process_ = std::move(*process);
    server.displayName_ = names.value(0);
    server.socket_ = folder + u'/' + names.value(1);
    server.ipcSocket_ = names.value(2);
    return server;
}

QProcessEnvironment SwayServer::environment() const
{
    auto environment = environmentOf(displayName_);
    environment.insert(QStringLiteral("WAYLAND_DISPLAY"), socket_);
    environment.insert(QStringLiteral("SWAYSOCK"), ipcSocket_);
    environment.insert(QStringLiteral("XDG_CURRENT_DESKTOP"), QStringLiteral("sway"));
    environment.insert(QStringLiteral("XDG_SESSION_TYPE"), QStringLiteral("wayland"));
    return environment;
}

/** Runs it to its end. Empty if it succeeds, otherwise what it said. */
QString SwayServer::run(const QString &program, const QStringList &arguments,
                        QByteArray *output) const
{
    auto process = ChildProcess::start(
        {.program = program, .arguments = arguments, .environment = environment()});
    if (!process) {
        return process.error();
    }
    const bool isDone = process->waitForEnd(std::chrono::seconds(10));
    *output = process->output();
    return isDone && process->exitCode() == 0 ? QString()
                                              : program + u' ' + QString::fromLocal8Bit(*output);
}

Result<void> SwayServer::command(const QString &text) const
{
    QByteArray answer;
    const QString problem = run(QStringLiteral("swaymsg"), {QStringLiteral("--"), text}, &answer);
    return problem.isEmpty() ? Result<void>() : failure(problem);
}

QJsonArray SwayServer::ask(const QString &question) const
{
    QByteArray answer;
    const QString problem = run(QStringLiteral("swaymsg"),
                                {QStringLiteral("-r"), QStringLiteral("-t"), question}, &answer);
    require(problem.isEmpty(), qPrintable(problem));
    return QJsonDocument::fromJson(answer).array();
}

QStringList SwayServer::outputNames() const
{
    QStringList names;
    for (const auto &output : ask(QStringLiteral("get_outputs"))) {
        names.append(output.toObject().value(QStringLiteral("name")).toString());
    }
    return names;
}

QRect SwayServer::outputPlace(const QString &name) const
{
    for (const auto &output : ask(QStringLiteral("get_outputs"))) {
        const auto rect = output.toObject().value(QStringLiteral("rect")).toObject();
        const auto number
            = [&](const char *key) { return rect.value(QString::fromLatin1(key)).toInt(); };
        if (output.toObject().value(QStringLiteral("name")) == name) {
            return {number("x"), number("y"), number("width"), number("height")};
        }
    }
    return {};
}

QImage SwayServer::screenshot(QRect rectangle, Pointer pointer) const
{
    const QString place = QStringLiteral("%1,%2 %3x%4")
                              .arg(rectangle.x())
                              .arg(rectangle.y())
                              .arg(rectangle.width())
                              .arg(rectangle.height());
    QStringList arguments{QStringLiteral("-s"),  QStringLiteral("1"),  QStringLiteral("-t"),
                          QStringLiteral("ppm"), QStringLiteral("-g"), place,
                          QStringLiteral("-")};
    if (pointer == Pointer::Shown) {
        arguments.prepend(QStringLiteral("-c"));
    }
    QByteArray picture;
    const bool isRead = run(QStringLiteral("grim"), arguments, &picture).isEmpty();
    return isRead ? QImage::fromData(picture, "PPM") : QImage();
}

} // namespace glimmerpane::testing
