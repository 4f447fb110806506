// SPDX-License-Identifier: MIT
#include "app/LaunchOptions.h"

#include <QTest>

using namespace glimmerpane;

class LaunchOptionsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void area_isFourTexts_data()
    {
        QTest::addColumn<QString>("arguments");
        QTest::addColumn<QString>("expected");
        QTest::newRow("two arguments") << "--area 10,20,300x200" << "10 20 300 200";
        QTest::newRow("one argument") << "--area=-5,0,300x200" << "-5 0 300 200";
        QTest::newRow("negative") << "--area -5,-7.5,300x200" << "-5 -7.5 300 200";
        QTest::newRow("two hexadecimal") << "--area 0,0,0x10x0x20" << "0 0 0x10 0x20";
        QTest::newRow("hexadecimal width") << "--area 0,0,0x10x20" << "0 0 0x10 20";
        QTest::newRow("hexadecimal height") << "--area 0,0,10x0X20" << "0 0 10 0X20";
        QTest::newRow("decimal width 0") << "--area 0x5,0,0x10" << "0x5 0 0 10";
        QTest::newRow("exponents") << "--area 1e3,.5,1e3x-2E+1" << "1e3 .5 1e3 -2E+1";
        QTest::newRow("the last counts") << "--area 0,0,1x1 --area 0,0,2x2" << "0 0 2 2";
    }

    void area_isFourTexts()
    {
        QFETCH(QString, arguments);
        QFETCH(QString, expected);
        const auto options = launchOptions(arguments.split(u' '));
        QVERIFY2(options, options ? "" : qPrintable(options.error()));
        QVERIFY(options->area);
        QCOMPARE(QStringList(options->area->begin(), options->area->end()).join(u' '), expected);
    }

    void flags_areReadInAnyOrder()
    {
        const auto none = launchOptions({});
        QVERIFY(none && !none->asksForSomething() && !none->help && !none->version);
        const auto both = launchOptions(QStringLiteral("--share --area 1,2,3x4").split(u' '));
        QVERIFY(both && both->share && both->area && !both->help && !both->version);
        const auto shortForms = launchOptions(QStringLiteral("-v -h").split(u' '));
        QVERIFY(shortForms && shortForms->help && shortForms->version && !shortForms->share);
    }

    void outputWindow_isTheLastOneAskedFor()
    {
        using enum OffscreenWindowKind;
        const auto kindOf = [](const char *arguments) {
            const auto options
                = launchOptions(QString::fromLatin1(arguments).split(u' ', Qt::SkipEmptyParts));
            return options ? options->outputWindow : std::nullopt;
        };
        QVERIFY(kindOf("") == std::nullopt);
        QVERIFY(kindOf("--output-window managed") == Managed);
        QVERIFY(kindOf("--output-window=managed --output-window=unlisted") == Unlisted);
    }

    void badArguments_areNamedInOneLine_data()
    {
        QTest::addColumn<QString>("arguments");
        QTest::addColumn<QString>("named");
        for (const char *area : {"abc", "10,20", "10,20,300", "10,20,300,200", "10,20,300x",
                                 "10,20,x200", "10,20,300X200", "10,,300x200", "a,20,300x200",
                                 "10,20,300x200x100", "10,20,300x200px", " 10,20,300x200",
                                 "10,20,300 x 200", "10,20,300x200,", "10,20,300\u00d7200"}) {
            const QString text = QString::fromUtf8(area);
            QTest::addRow("--area=%s", area) << QStringLiteral("--area=") + text << text.trimmed();
        }
        QTest::newRow("empty area") << "--area=" << "''";
        QTest::newRow("area of two lines") << "--area|10,20\n300x200" << "10,20 300x200";
        QTest::newRow("no value") << "--share|--area" << "area";
        QTest::newRow("kind of output") << "--output-window=Managed" << "'Managed'";
        QTest::newRow("unknown option") << "--shared" << "shared";
        QTest::newRow("value of a flag") << "--share=1" << "share";
        QTest::newRow("two commands") << "--stop|--select" << "--select";
        QTest::newRow("positional") << "--share|a\nb" << "a b";
        QTest::newRow("after the end of options") << "--|--share" << "--share";
    }

    void badArguments_areNamedInOneLine()
    {
        QFETCH(QString, arguments);
        QFETCH(QString, named);
        const auto options = launchOptions(arguments.split(u'|'));
        QVERIFY(!options);
        QVERIFY2(options.error().contains(named), qPrintable(options.error()));
        QVERIFY(!options.error().contains(u'\n'));
    }
};

QTEST_APPLESS_MAIN(LaunchOptionsTest)
#include "LaunchOptionsTest.moc"
