// SPDX-License-Identifier: MIT
#include "app/LaunchOptions.h"

#include <QTest>

using namespace glimmerpane;

namespace
{

QStringList list(std::initializer_list<const char *> texts)
{
    QStringList result;
    for (const char *text : texts) {
        result.append(QString::fromUtf8(text));
    }
    return result;
}

} // namespace

class LaunchOptionsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void area_isFourTexts_data();
    void area_isFourTexts();
    void flags_areReadInAnyOrder();
    void badArguments_areNamedInOneLine_data();
    void badArguments_areNamedInOneLine();
};

void LaunchOptionsTest::area_isFourTexts_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QStringList>("expected");
    const auto row = [](std::initializer_list<const char *> arguments,
                        std::initializer_list<const char *> expected) {
        QTest::newRow(qPrintable(list(arguments).join(u' '))) << list(arguments) << list(expected);
    };
    row({"--area", "10,20,300x200"}, {"10", "20", "300", "200"});
    row({"--area=10,20,300x200"}, {"10", "20", "300", "200"});
    row({"--area=-5,0,300x200"}, {"-5", "0", "300", "200"});
    row({"--area", "-5,-7.5,300x200"}, {"-5", "-7.5", "300", "200"});
    row({"--area", "0,0,0x10x0x20"}, {"0", "0", "0x10", "0x20"});
    row({"--area", "0,0,0x10x20"}, {"0", "0", "0x10", "20"});
    row({"--area", "0,0,10x0X20"}, {"0", "0", "10", "0X20"});
    row({"--area", "0x5,0,0x10"}, {"0x5", "0", "0", "10"});
    row({"--area", "1e3,.5,1e3x-2E+1"}, {"1e3", ".5", "1e3", "-2E+1"});
    row({"--area", "0,0,1x1", "--area", "0,0,2x2"}, {"0", "0", "2", "2"});
}

void LaunchOptionsTest::area_isFourTexts()
{
    QFETCH(QStringList, arguments);
    QFETCH(QStringList, expected);
    const auto options = launchOptions(arguments);
    QVERIFY2(options, options ? "" : qPrintable(options.error()));
    QVERIFY(options->area);
    QCOMPARE(QStringList(options->area->begin(), options->area->end()), expected);
}

void LaunchOptionsTest::flags_areReadInAnyOrder()
{
    const auto none = launchOptions({});
    QVERIFY(none && !none->area && !none->share && !none->help && !none->version);
    const auto both = launchOptions(list({"--share", "--area", "1,2,3x4"}));
    QVERIFY(both && both->share && both->area && !both->help && !both->version);
    const auto shortForms = launchOptions(list({"-v", "-h"}));
    QVERIFY(shortForms && shortForms->help && shortForms->version && !shortForms->share);
}

void LaunchOptionsTest::badArguments_areNamedInOneLine_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("named");
    for (const char *area :
         {"abc", "10,20", "10,20,300", "10,20,300,200", "10,20,300x", "10,20,x200", "10,20,300X200",
          "10,,300x200", ",20,300x200", "a,20,300x200", "10,20,300x200x100", "10,20,300x200px",
          " 10,20,300x200", "10, 20,300x200", "10,20,300 x 200", "10,20,300x200,", "10;20;300x200",
          "1.0.0,20,300x200", "10,20,300\u00d7200"}) {
        QTest::addRow("--area=%s", area)
            << QStringList(QStringLiteral("--area=") + QString::fromUtf8(area))
            << QString::fromUtf8(area);
    }
    QTest::newRow("--area=") << list({"--area="}) << QStringLiteral("''");
    QTest::newRow("--area, two lines")
        << list({"--area", "10,20\n300x200"}) << QStringLiteral("10,20 300x200");
    QTest::newRow("no value") << list({"--share", "--area"}) << QStringLiteral("area");
    QTest::newRow("unknown option") << list({"--shared"}) << QStringLiteral("shared");
    QTest::newRow("unknown letter") << list({"-x"}) << QStringLiteral("x");
    QTest::newRow("value of a flag") << list({"--share=1"}) << QStringLiteral("share");
    QTest::newRow("positional") << list({"--share", "now"}) << QStringLiteral("now");
    QTest::newRow("positional, two lines") << list({"a\nb"}) << QStringLiteral("a b");
    QTest::newRow("after the end of options")
        << list({"--", "--share"}) << QStringLiteral("--share");
}

void LaunchOptionsTest::badArguments_areNamedInOneLine()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, named);
    const auto options = launchOptions(arguments);
    QVERIFY(!options);
    QVERIFY2(options.error().contains(named.trimmed()), qPrintable(options.error()));
    QVERIFY(!options.error().contains(u'\n'));
}

QTEST_APPLESS_MAIN(LaunchOptionsTest)
#include "LaunchOptionsTest.moc"
