// SPDX-License-Identifier: MIT
#include "bench/Peers.h"

#include <algorithm>
#include <cmath>

namespace glimmerpane::bench
{

namespace
{

constexpr int panelWidth = 460;
constexpr int panelHeight = 380;
constexpr QRect inner(70, 80, 370, 250); ///< the axes in a panel

constexpr std::array colors{"#1a6fd4", "#d9730d", "#2e8b57", "#8e3fb0"}; ///< by tool

struct Point {
    QString category;
    std::array<std::optional<double>, tools.size()> values{}; ///< by tool
};

struct Panel {
    QString title;
    QString unit;
    std::vector<Point> points;
    bool joined = false; ///< whether one point's neighbours continue it

    double lowest() const { return std::pow(10, std::floor(std::log10(extreme(false)))); }
    double highest() const { return std::pow(10, std::ceil(std::log10(extreme(true)))); }

    QPointF place(size_t category, double value) const
    {
        const double range = std::log10(highest() / lowest());
        const double part = std::log10(std::max(value, lowest()) / lowest()) / range;
        const double step = static_cast<double>(inner.width()) / static_cast<double>(points.size());
        return {inner.left() + step * (static_cast<double>(category) + 0.5),
                inner.top() + inner.height() * (1 - part)};
    }

private:
    double extreme(bool largest) const
    {
        std::vector<double> all;
        for (const Point &point : points) {
            for (const auto &value : point.values) {
                if (value && *value > 0) {
                    all.push_back(*value);
                }
            }
        }
        const double found = all.empty()
            ? 1
            : (largest ? *std::ranges::max_element(all) : *std::ranges::min_element(all));
        // A range of no decade would have no height.
        return largest ? found * 1.01 : found * 0.99;
    }
};

Point pointOf(const PeerComparison &comparison, const QString &category, double (*value)(PeerRun))
{
    Point point{.category = category};
    for (size_t i = 0; i < comparison.results.size(); ++i) {
        if (!comparison.results[i].runs.empty()) {
            point.values[i] = comparison.results[i].medianOf(value);
        }
    }
    return point;
}

QString textAt(QPointF place, const QString &anchor, const QString &text)
{
    return QStringLiteral("<text x=\"%1\" y=\"%2\" text-anchor=\"%3\">%4</text>\n")
        .arg(place.x())
        .arg(place.y())
        .arg(anchor, text.toHtmlEscaped());
}

QString axes(const Panel &panel)
{
    QString svg = textAt({inner.left() - 50.0, 36}, QStringLiteral("start"), panel.title)
        + textAt({inner.left() - 50.0, 56}, QStringLiteral("start"), panel.unit);
    for (double value = panel.lowest(); value <= panel.highest() * 1.001; value *= 10) {
        const double y = panel.place(0, value).y();
        svg += QStringLiteral(
                   "<line x1=\"%1\" y1=\"%3\" x2=\"%2\" y2=\"%3\" stroke=\"#d0d0d0\"/>\n")
                   .arg(inner.left())
                   .arg(inner.left() + inner.width())
                   .arg(y)
            + textAt({inner.left() - 8.0, y + 4}, QStringLiteral("end"),
                     QString::number(value, 'g', 6));
    }
    for (size_t i = 0; i < panel.points.size(); ++i) {
        svg += textAt({panel.place(i, 1).x(), inner.bottom() + 24.0}, QStringLiteral("middle"),
                      panel.points[i].category);
    }
    return svg;
}

QString series(const Panel &panel, size_t tool)
{
    QString dots;
    QStringList corners;
    const QString color = QString::fromLatin1(colors[tool]);
    for (size_t i = 0; i < panel.points.size(); ++i) {
        const auto value = panel.points[i].values[tool];
        if (!value) {
            continue;
        }
        const QPointF place = panel.place(i, *value);
        corners << QStringLiteral("%1,%2").arg(place.x()).arg(place.y());
        dots += QStringLiteral("<circle cx=\"%1\" cy=\"%2\" r=\"5\" fill=\"%3\"/>\n")
                    .arg(place.x())
                    .arg(place.y())
                    .arg(color);
    }
    const QString line = QStringLiteral("<polyline points=\"%1\" fill=\"none\" stroke=\"%2\" "
                                        "stroke-width=\"2\"/>\n")
                             .arg(corners.join(u' '), color);
    return panel.joined ? line + dots : dots;
}

QString legend()
{
    QString svg;
    for (size_t i = 0; i < tools.size(); ++i) {
        const double x = 20 + 150.0 * static_cast<double>(i);
        svg += QStringLiteral("<circle cx=\"%1\" cy=\"19\" r=\"6\" fill=\"%2\"/>\n")
                   .arg(x)
                   .arg(QString::fromLatin1(colors[i]))
            + textAt({x + 14, 24}, QStringLiteral("start"), toolName(tools[i]));
    }
    return svg;
}

std::vector<Panel> panelsOf(const std::vector<PeerComparison> &comparisons)
{
    Panel cost{QStringLiteral("Processor time per shown frame, full motion"),
               QStringLiteral("ms, tool and X server"),
               {},
               true};
    Panel latency{
        QStringLiteral("Latency of an isolated change, median"), QStringLiteral("ms"), {}, true};
    Panel quiet{QStringLiteral("Processor time while little or nothing moves"),
                QStringLiteral("ms a second, tool and X server, 1280x720"),
                {},
                false};
    for (const PeerComparison &comparison : comparisons) {
        const PeerScene &scene = comparison.scene;
        const auto category
            = QStringLiteral("%1x%2").arg(scene.size.width()).arg(scene.size.height());
        if (scene.isFullMotion()) {
            cost.points.push_back(
                pointOf(comparison, category, [](PeerRun run) { return run.cost(); }));
            latency.points.push_back(
                pointOf(comparison, category, [](PeerRun run) { return run.latency; }));
        } else {
            quiet.points.push_back(
                pointOf(comparison, scene.name, [](PeerRun run) { return run.motion; }));
        }
        if (scene.isFullMotion() && scene.size == QSize(1280, 720)) {
            quiet.points.push_back(pointOf(comparison, QStringLiteral("unchanging"),
                                           [](PeerRun run) { return run.idle; }));
        }
    }
    return {cost, latency, quiet};
}

} // namespace

QString peerPlot(const std::vector<PeerComparison> &comparisons)
{
    constexpr int head = 36;
    QString body = legend();
    const auto panels = panelsOf(comparisons);
    for (size_t i = 0; i < panels.size(); ++i) {
        body += QStringLiteral("<g transform=\"translate(%1 %2)\">\n")
                    .arg(static_cast<int>(i) * panelWidth)
                    .arg(head)
            + axes(panels[i]);
        for (size_t tool = 0; tool < tools.size(); ++tool) {
            body += series(panels[i], tool);
        }
        body += QStringLiteral("</g>\n");
    }
    return QStringLiteral("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%1\" height=\"%2\" "
                          "font-family=\"DejaVu Sans, sans-serif\" font-size=\"13\">\n"
                          "<rect width=\"100%\" height=\"100%\" fill=\"#ffffff\"/>\n%3</svg>\n")
        .arg(panelWidth * static_cast<int>(panels.size()))
        .arg(panelHeight + head)
        .arg(body);
}

} // namespace glimmerpane::bench
