// SPDX-License-Identifier: MIT
#include "platform/gnome/Stage.h"

#include "platform/bus/BusObject.h"
#include "platform/pipewire/LogicalRegion.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QMap>
#include <QPoint>

#include <algorithm>

namespace glimmerpane::gnome
{

namespace
{

// GetCurrentState() as mutter's org.gnome.Mutter.DisplayConfig.xml describes it.
constexpr uint layoutInUnits = 1; ///< "logical": monitors count less than their pixels

struct MonitorName {
    QString connector;
    QString vendor;
    QString product;
    QString serial;
};

const QDBusArgument &operator>>(const QDBusArgument &from, MonitorName &name)
{
    from.beginStructure();
    from >> name.connector >> name.vendor >> name.product >> name.serial;
    from.endStructure();
    return from;
}

struct Mode {
    QSize pixels;
    bool isCurrent = false;
};

const QDBusArgument &operator>>(const QDBusArgument &from, Mode &mode)
{
    QString id;
    double refreshRate = 0;
    double preferredScale = 0;
    QList<double> scales;
    QVariantMap more;
    from.beginStructure();
    from >> id >> mode.pixels.rwidth() >> mode.pixels.rheight() >> refreshRate >> preferredScale
        >> scales >> more;
    from.endStructure();
    mode.isCurrent = more.value(QStringLiteral("is-current")).toBool();
    return from;
}

struct Monitor {
    MonitorName name;
    QList<Mode> modes;
};

const QDBusArgument &operator>>(const QDBusArgument &from, Monitor &monitor)
{
    QVariantMap more;
    from.beginStructure();
    from >> monitor.name >> monitor.modes >> more;
    from.endStructure();
    return from;
}

/** Monitors that show the same part of the stage. */
struct LogicalMonitor {
    QPoint place;
    double scale = 1;
    uint transform = 0; ///< odd if it is turned by a quarter
    QList<MonitorName> monitors;
};

const QDBusArgument &operator>>(const QDBusArgument &from, LogicalMonitor &logical)
{
    bool isPrimary = false;
    QVariantMap more;
    from.beginStructure();
    from >> logical.place.rx() >> logical.place.ry() >> logical.scale >> logical.transform
        >> isPrimary >> logical.monitors >> more;
    from.endStructure();
    return from;
}

QSize pixelsOf(const LogicalMonitor &logical, const QList<Monitor> &monitors)
{
    const auto monitor = std::ranges::find_if(monitors, [&](const Monitor &each) {
        return !logical.monitors.empty()
            && each.name.connector == logical.monitors.front().connector;
    });
    if (monitor == monitors.end()) {
        return {};
    }
    const auto mode = std::ranges::find_if(monitor->modes, &Mode::isCurrent);
    if (mode == monitor->modes.end()) {
        return {};
    }
    return logical.transform % 2 != 0 ? mode->pixels.transposed() : mode->pixels;
}

BusObject displayConfig()
{
    return {.service = QStringLiteral("org.gnome.Mutter.DisplayConfig"),
            .path = QStringLiteral("/org/gnome/Mutter/DisplayConfig"),
            .interface = QStringLiteral("org.gnome.Mutter.DisplayConfig")};
}

const QString &getCurrentState()
{
    static const auto name = QStringLiteral("GetCurrentState");
    return name;
}

Stage stageOf(const QVariantList &state)
{
    if (state.size() != 4) {
        return {};
    }
    const auto monitors = qdbus_cast<QList<Monitor>>(state.at(1));
    const auto logicals = qdbus_cast<QList<LogicalMonitor>>(state.at(2));
    const auto properties = qdbus_cast<QVariantMap>(state.at(3));
    const bool isInUnits
        = properties.value(QStringLiteral("layout-mode")).toUInt() == layoutInUnits;
    Stage stage;
    QSizeF size(0, 0);
    for (const LogicalMonitor &logical : logicals) {
        const double scale = isInUnits ? logical.scale : 1;
        const QSizeF units = QSizeF(pixelsOf(logical, monitors)) / scale;
        size = size.expandedTo(
            QSizeF(logical.place.x() + units.width(), logical.place.y() + units.height()));
        stage.views.push_back({.place = QRectF(logical.place, units), .scale = scale});
    }
    stage.size = size.toSize();
    return stage;
}

} // namespace

QCoro::Task<Stage> stage()
{
    const auto state = co_await displayConfig().call(getCurrentState());
    co_return state ? stageOf(*state) : Stage();
}

double magnification(QRect area, QRect desktop)
{
    const BusObject object = displayConfig();
    const auto call = QDBusMessage::createMethodCall(object.service, object.path, object.interface,
                                                     getCurrentState());
    constexpr int longest = 2000; // milliseconds
    const Stage stage
        = stageOf(QDBusConnection::sessionBus().call(call, QDBus::Block, longest).arguments());
    const auto region = pipewire::regionOf(area, desktop, {QPoint(), stage.size});
    double scale = 1; // mutter takes the largest
    for (const StageView &view : stage.views) {
        if (view.place.intersects(region.logical)) {
            scale = std::max(scale, view.scale);
        }
    }
    return scale / region.scale;
}

} // namespace glimmerpane::gnome
