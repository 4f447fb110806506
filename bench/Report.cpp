// SPDX-License-Identifier: MIT
#include "bench/Report.h"

#include <QDateTime>
#include <QFile>
#include <QSaveFile>
#include <QSysInfo>
#include <QThread>

#include <algorithm>
#include <array>
#include <cstdlib>

namespace glimmerpane::bench
{

namespace
{

QString processorName()
{
    QFile file(QStringLiteral("/proc/cpuinfo"));
    if (!file.open(QIODevice::ReadOnly)) {
        return QStringLiteral("unknown processor");
    }
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (line.startsWith("model name")) {
            return QString::fromUtf8(line.mid(line.indexOf(':') + 1).trimmed());
        }
    }
    return QStringLiteral("unknown processor");
}

/** Work of others on the machine blurs every figure; a reader should be able to tell. */
QString loadText()
{
    std::array<double, 3> loads{};
    if (getloadavg(loads.data(), static_cast<int>(loads.size())) < 1) {
        return QStringLiteral("load unknown");
    }
    return QStringLiteral("load at the end %1 (1 min), %2 (5 min)")
        .arg(number(loads[0], 1), number(loads[1], 1));
}

QString verdictText(Verdict verdict)
{
    switch (verdict) {
    case Verdict::Met:
        return QStringLiteral("met");
    case Verdict::Missed:
        return QStringLiteral("**MISSED**");
    case Verdict::None:
        break;
    }
    return QStringLiteral("-");
}

constexpr int rowHeight = 34;
constexpr int labelWidth = 430;
constexpr int targetX = 780; ///< where the target's line stands
constexpr double largestPart = 1.7; ///< longer bars are cut
constexpr int valueX = 1040; ///< right of the longest bar
constexpr int plotWidth = 1360;

QString bar(const Figure &figure, int top)
{
    const double part = std::clamp(*figure.partOfTarget, 0.0, largestPart);
    const int width = std::max(2, static_cast<int>(part * (targetX - labelWidth)));
    const bool missed = figure.verdict == Verdict::Missed;
    return QStringLiteral("<text x=\"%1\" y=\"%2\" text-anchor=\"end\">%3</text>\n"
                          "<rect x=\"%4\" y=\"%5\" width=\"%6\" height=\"20\" fill=\"%7\"/>\n"
                          "<text x=\"%8\" y=\"%2\">%9</text>\n")
        .arg(labelWidth - 12)
        .arg(top + 21)
        .arg(figure.name.toHtmlEscaped())
        .arg(labelWidth)
        .arg(top + 6)
        .arg(width)
        .arg(missed ? QStringLiteral("#d13438") : QStringLiteral("#1a6fd4"))
        .arg(valueX)
        .arg(QStringLiteral("%1 (target %2)").arg(figure.measured, figure.target).toHtmlEscaped());
}

} // namespace

QString machineText(const QString &mode)
{
    return QStringLiteral("%1, %2 x %3, %4, kernel %5, Xvfb (software rendering), Qt %6; %7; %8.")
        .arg(QDateTime::currentDateTimeUtc().toString(Qt::ISODate))
        .arg(QThread::idealThreadCount())
        .arg(processorName(), QSysInfo::prettyProductName(), QSysInfo::kernelVersion(),
             QString::fromLatin1(qVersion()), mode, loadText());
}

QString number(double value, int decimals)
{
    return QString::number(value, 'f', decimals);
}

Figure boundedFigure(const QString &name, double measured, double target, const QString &unit,
                     const QString &counted)
{
    return {.name = name,
            .measured = number(measured) + unit,
            .target = QStringLiteral("at most ") + QString::number(target) + unit,
            .verdict = measured <= target ? Verdict::Met : Verdict::Missed,
            .counted = counted,
            .partOfTarget = target > 0 ? measured / target : (measured > 0 ? largestPart : 0)};
}

QString table(const std::vector<Figure> &figures, const QString &mode)
{
    QString text = QStringLiteral("# What Glimmerpane costs\n\n") + machineText(mode)
        + QStringLiteral("\n\n| Figure | Measured | Target | | What was counted |\n"
                         "|---|---|---|---|---|\n");
    for (const Figure &figure : figures) {
        text += QStringLiteral("| %1 | %2 | %3 | %4 | %5 |\n")
                    .arg(figure.name, figure.measured,
                         figure.target.isEmpty() ? QStringLiteral("-") : figure.target,
                         verdictText(figure.verdict), figure.counted);
    }
    return text;
}

QString plot(const std::vector<Figure> &figures)
{
    constexpr int head = 50;
    QString bars;
    int top = head;
    for (const Figure &figure : figures) {
        if (!figure.partOfTarget) {
            continue;
        }
        bars += bar(figure, top);
        top += rowHeight;
    }
    return QStringLiteral("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%1\" height=\"%2\" "
                          "font-family=\"DejaVu Sans, sans-serif\" font-size=\"14\">\n"
                          "<rect width=\"100%\" height=\"100%\" fill=\"#ffffff\"/>\n"
                          "<text x=\"%3\" y=\"28\" text-anchor=\"middle\">target</text>\n%4"
                          "<line x1=\"%3\" y1=\"38\" x2=\"%3\" y2=\"%5\" stroke=\"#222222\" "
                          "stroke-dasharray=\"4 3\"/>\n</svg>\n")
        .arg(plotWidth)
        .arg(top + 16)
        .arg(targetX)
        .arg(bars)
        .arg(top + 6);
}

testing::Result<void> writeText(const QString &path, const QString &text)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text.toUtf8()) < 0 || !file.commit()) {
        return testing::failure(
            QStringLiteral("cannot write %1: %2").arg(path, file.errorString()));
    }
    return {};
}

} // namespace glimmerpane::bench
