// SPDX-License-Identifier: MIT
#include "app/NumberText.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <bit>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>

using namespace glimmerpane;

using Number = std::optional<double>;

class NumberTextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void number_isTheWholeText_data();
    void number_isTheWholeText();
    void number_hasAPoint_whateverTheLocale();
};

void NumberTextTest::number_isTheWholeText_data()
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    QTest::addColumn<QString>("text");
    QTest::addColumn<Number>("expected");
    const auto row = [](const QString &text, Number expected) {
        QTest::addRow("<%s>", text.toUtf8().toPercentEncoding(" +'").constData())
            << text << expected;
    };
    const std::pair<const char *, double> numbers[]{
        {"0", 0.0},
        {"-0", -0.0},
        {"10", 10},
        {"-5", -5},
        {"+5", 5},
        {"007", 7},
        {"1.5", 1.5},
        {".5", .5},
        {"5.", 5},
        {"0.1", 0.1},
        {"1e3", 1000},
        {"1E+3", 1000},
        {"-1.25e-2", -.0125},
        {"0x10", 16},
        {"-0X1.8p1", -3},
        {"0x.8", .5},
        {"inf", infinity},
        {"-INF", -infinity},
        {"Infinity", infinity},
        {"nan", nan},
        {"NaN", nan},
        {"1e999", infinity},
        {"-1e999", -infinity},
        {"1e-999", 0.0},
        {"5e-324", 5e-324},
        {"1.7976931348623157e308", std::numeric_limits<double>::max()},
    };
    for (const auto &[text, number] : numbers) {
        row(QString::fromLatin1(text), number);
    }
    for (const char *text : {"",     "abc",  "-",    "+",     ".",    "e3",      "--5",   "+-5",
                             "- 5",  "1e",   "1e+",  "1.2.3", "1,5",  "1 000",   "1_000", "1'000",
                             "10px", "0x",   "0xg",  "0x1p",  "0b1",  "infinit", "nano",  " 10",
                             "\t10", "\n10", "\v10", "\f10",  "\r10", "10 ",     "10\n"}) {
        row(QString::fromLatin1(text), std::nullopt);
    }
    const QChar nul(0);
    row(nul + QStringLiteral("10"), std::nullopt);
    row(QStringLiteral("10") + nul, std::nullopt);
    row(QStringLiteral("10") + nul + QStringLiteral("20"), std::nullopt);
    row(QString(nul), std::nullopt);
    row(QStringLiteral("\u00a010"), std::nullopt); // no-break space
    row(QStringLiteral("\u0661\u0660"), std::nullopt); // Arabic-Indic digits
    row(QStringLiteral("\u221210"), std::nullopt); // minus sign
    row(QStringLiteral("10") + QChar(0xd800), std::nullopt); // half of a surrogate pair
}

void NumberTextTest::number_isTheWholeText()
{
    QFETCH(QString, text);
    QFETCH(Number, expected);
    const Number actual = numberFromText(text);
    QCOMPARE(actual.has_value(), expected.has_value());
    if (expected && std::isnan(*expected)) {
        QVERIFY(std::isnan(*actual));
    } else if (expected) {
        QCOMPARE(std::bit_cast<std::uint64_t>(*actual), std::bit_cast<std::uint64_t>(*expected));
    }
}

void NumberTextTest::number_hasAPoint_whateverTheLocale()
{
    // Made here, because a machine need not have a locale with a decimal comma.
    const QTemporaryDir locales;
    QProcess::execute(QStringLiteral("localedef"),
                      {QStringLiteral("-i"), QStringLiteral("de_DE"), QStringLiteral("-f"),
                       QStringLiteral("UTF-8"), locales.filePath(QStringLiteral("de_DE.UTF-8"))});
    qputenv("LOCPATH", QFile::encodeName(locales.path()));
    QVERIFY(std::setlocale(LC_ALL, "de_DE.UTF-8"));
    QCOMPARE(std::strtod("1,5", nullptr), 1.5);
    const Number point = numberFromText(u"1.5");
    const Number comma = numberFromText(u"1,5");
    std::setlocale(LC_ALL, "C");
    QCOMPARE(point, 1.5);
    QCOMPARE(comma, std::nullopt);
}

QTEST_APPLESS_MAIN(NumberTextTest)
#include "NumberTextTest.moc"
