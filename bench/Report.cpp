// SPDX-License-Identifier: MIT
#include "bench/Report.h"

#include <QDateTime>
#include <QSaveFile>
#include <QSysInfo>
#include <QTextStream>
#include <QThread>

#include <array>
#include <cstdlib>

namespace glimmerpane::bench
{

namespace
{

constexpr double allOfTarget = 1.7; ///< what is shown for anything above

QString processorName()
{
    QFile file(u"/proc/cpuinfo"_s);
    const QByteArray text = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    const auto begin = text.indexOf(':', text.indexOf("model name")) + 1;
    return QString::fromUtf8(text.mid(begin, text.indexOf('\n', begin) - begin)).trimmed();
}

QString targetText(const Figure &figure)
{
    if (figure.atMost) {
        return u"at most %1%2"_s.arg(*figure.atMost).arg(figure.unit);
    }
    return figure.atLeast ? u"at least %1%2"_s.arg(*figure.atLeast).arg(figure.unit) : u"-"_s;
}

QString verdictText(const Figure &figure)
{
    const auto part = figure.partOfTarget();
    return !part ? u"-"_s : *part <= 1 ? u"met"_s : u"**MISSED**"_s;
}

} // namespace

QString Figure::measured() const
{
    return problem.isEmpty() ? number(value, decimals) + unit : u"could not be measured"_s;
}

std::optional<double> Figure::partOfTarget() const
{
    if (!problem.isEmpty() || (!atMost && !atLeast)) {
        return std::nullopt;
    }
    const double above = atMost ? value : *atLeast;
    const double below = atMost ? *atMost : value;
    return below > 0 ? above / below : above > 0 ? allOfTarget : 0;
}

QString number(double value, int decimals)
{
    return QString::number(value, 'f', decimals);
}

QString machineText(const QString &mode, const QString &display)
{
    // Work of others on the machine blurs every figure; a reader should be able to tell.
    std::array<double, 2> loads{};
    getloadavg(loads.data(), static_cast<int>(loads.size()));
    return u"%1, %2 x %3, %4, kernel %5, %6 (software rendering), Qt %7; %8; load at the end %9 "
           "(1 min), %10 (5 min)."_s.arg(QDateTime::currentDateTimeUtc().toString(Qt::ISODate))
               .arg(QThread::idealThreadCount())
               .arg(processorName(), QSysInfo::prettyProductName(), QSysInfo::kernelVersion(),
                    display, QString::fromLatin1(qVersion()), mode, number(loads[0], 1),
                    number(loads[1], 1));
}

void writeResults(const QDir &folder, const std::vector<Figure> &figures, const QString &mode)
{
    QString text = u"# What Glimmerpane costs\n\n%1\n\n| Figure | Measured | Target | | What was "
                   "counted |\n|---|---|---|---|---|\n"_s.arg(machineText(mode));
    QString data;
    for (const Figure &figure : figures) {
        text += u"| %1 | %2 | %3 | %4 | %5 |\n"_s.arg(
            figure.name, figure.measured(), targetText(figure), verdictText(figure),
            figure.problem.isEmpty() ? figure.counted : figure.problem);
        if (const auto part = figure.partOfTarget()) {
            data += u"%1\t%2\t%3 (target: %4)\t%5\n"_s.arg(figure.name)
                        .arg(std::min(*part, allOfTarget))
                        .arg(figure.measured(), targetText(figure))
                        .arg(*part > 1 ? 1 : 0);
        }
    }
    QTextStream(stdout) << text;
    writeText(folder.filePath(u"results.md"_s), text);
    writeText(folder.filePath(u"results.dat"_s), data);
}

void writeText(const QString &path, const QString &text)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text.toUtf8()) < 0 || !file.commit()) {
        throw Failure(u"cannot write %1: %2"_s.arg(path, file.errorString()));
    }
}

} // namespace glimmerpane::bench
