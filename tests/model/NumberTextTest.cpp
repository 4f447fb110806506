// SPDX-License-Identifier: MIT
#include "model/NumberText.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <bit>
#include <clocale>
#include <cstdint>
#include <cstdlib>
#include <limits>

using namespace glimmerpane;

using Number = std::optional<double>;

class NumberTextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void number_isTheWholeText()
    {
        constexpr double infinity = std::numeric_limits<double>::infinity();
        constexpr double nan = std::numeric_limits<double>::quiet_NaN();
        const auto bits = [](double number) { return std::bit_cast<std::uint64_t>(number); };
        const std::initializer_list<std::pair<const char *, double>> numbers = {
            {"-0", -0.0},       {"+5", 5},           {"007", 7},
            {".5", .5},         {"5.", 5},           {"1E+3", 1000},
            {"-0X1.8p1", -3},   {"-INF", -infinity}, {"Infinity", infinity},
            {"nan", nan},       {"1e999", infinity}, {"1e-999", 0},
            {"5e-324", 5e-324},
        };
        for (const auto &[text, number] : numbers) {
            QCOMPARE(numberFromText(QString::fromLatin1(text)).transform(bits),
                     Number(number).transform(bits));
        }
        // The last four: no-break space, Arabic-Indic digits, minus sign, half of a pair.
        const QStringList others
            = QStringLiteral("|abc|-|.|e3|--5|- 5|1e|1e+|1.2.3|1,5|1 000|1'000|10px|0x|0xg|0b1|"
                             "infinit|nano| 10|\t10|\n10|\v10|\f10|\r10|10 |10\n|\0|\0"
                             "10|10\0|"
                             "\u00a010|\u0661\u0660|\u221210|10\xd800")
                  .split(u'|');
        for (const QString &text : others) {
            QVERIFY2(!numberFromText(text), text.toUtf8().toPercentEncoding(" +'"));
        }
    }

    void number_hasAPoint_whateverTheLocale()
    {
        // Made here, because a machine need not have a locale with a decimal comma.
        const QTemporaryDir locales;
        QProcess::execute(QStringLiteral("localedef"),
                          {QStringLiteral("-i"), QStringLiteral("de_DE"), QStringLiteral("-f"),
                           QStringLiteral("UTF-8"),
                           locales.filePath(QStringLiteral("de_DE.UTF-8"))});
        qputenv("LOCPATH", QFile::encodeName(locales.path()));
        QVERIFY(std::setlocale(LC_ALL, "de_DE.UTF-8"));
        QCOMPARE(std::strtod("1,5", nullptr), 1.5);
        const Number point = numberFromText(u"1.5");
        const Number comma = numberFromText(u"1,5");
        std::setlocale(LC_ALL, "C");
        QCOMPARE(point, 1.5);
        QCOMPARE(comma, std::nullopt);
    }
};

QTEST_APPLESS_MAIN(NumberTextTest)
#include "NumberTextTest.moc"
