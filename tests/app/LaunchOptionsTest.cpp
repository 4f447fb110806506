// SPDX-License-Identifier: MIT
#include "app/LaunchOptions.h"

#include <QTest>

using namespace glimmerpane;

class LaunchOptionsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void area_isFourTexts()
    {
        for (const auto &[arguments, expected] :
             {std::pair("--area 10,20,300x200", "10 20 300 200"),
              {"--area=-5,0,300x200", "-5 0 300 200"},
              {"--area -5,-7.5,300x200", "-5 -7.5 300 200"},
              {"--area 0,0,0x10x0x20", "0 0 0x10 0x20"},
              {"--area 0,0,0x10x20", "0 0 0x10 20"},
              {"--area 0,0,10x0X20", "0 0 10 0X20"},
              {"--area 0x5,0,0x10", "0x5 0 0 10"},
              {"--area 1e3,.5,1e3x-2E+1", "1e3 .5 1e3 -2E+1"},
              {"--area 0,0,1x1 --area 0,0,2x2", "0 0 2 2"}}) {
            const auto options = launchOptions(QString::fromLatin1(arguments).split(u' '));
            QVERIFY2(options && options->area, arguments);
            QCOMPARE(QStringList(options->area->begin(), options->area->end()).join(u' '),
                     QLatin1String(expected));
        }
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

    void move_isAPlace_orAnArea()
    {
        for (const auto &[arguments, expected] :
             {std::pair("--move 10,-20.5", std::pair(-20.5, std::optional<double>())),
              {"--save --move=-1,2,0x10x5", {2, 16}}}) {
            const auto options = launchOptions(QString::fromLatin1(arguments).split(u' '));
            QVERIFY2(options && options->move && options->needsInstance(), arguments);
            QCOMPARE(std::pair(options->move->y, options->move->width), expected);
            QCOMPARE(options->save, options->move->width.has_value());
        }
    }

    void outputWindow_isTheLastOneAskedFor()
    {
        const auto listedBy = [](const char *arguments) {
            const auto options
                = launchOptions(QString::fromLatin1(arguments).split(u' ', Qt::SkipEmptyParts));
            return options ? options->listsOutput : std::nullopt;
        };
        QVERIFY(listedBy("") == std::nullopt);
        QVERIFY(listedBy("--output-window managed") == true);
        QVERIFY(listedBy("--output-window=managed --output-window=unlisted") == false);
    }

    void storedAreas_needNoDisplay_unlessTheyAreUsed()
    {
        for (const auto &[arguments, expected] : {std::pair("--areas --json", true),
                                                  {"--save-as a --forget b", true},
                                                  {"--save-as a --share", false},
                                                  {"--area 1,2,3x4 --save-as a", false},
                                                  {"--use a", false},
                                                  {"--size 16:9 --save-as a", false},
                                                  {"--status", false}}) {
            const auto options = launchOptions(QString::fromLatin1(arguments).split(u' '));
            QVERIFY2(options && options->asksForSomething(), arguments);
            QVERIFY2(options->needsNoDisplay() == expected, arguments);
        }
    }

    void switches_areOnOrOff_andStartTheProgram()
    {
        for (const auto &[argument, option, isOn] :
             {std::tuple("--frame=on", &LaunchOptions::frame, true),
              {"--frame=off", &LaunchOptions::frame, false},
              {"--tray=on", &LaunchOptions::tray, true},
              {"--tray=off", &LaunchOptions::tray, false}}) {
            const auto options = launchOptions({QString::fromLatin1(argument)});
            QVERIFY2(options && (*options).*option == isOn && options->asksForSomething()
                         && !options->needsInstance() && !options->needsNoDisplay(),
                     argument);
        }
    }

    void badArguments_areNamedInOneLine()
    {
        std::vector<std::pair<QString, QString>> rows{
            {QStringLiteral("--area="), QStringLiteral("''")},
            {QStringLiteral("--area|10,20\n300x200"), QStringLiteral("10,20 300x200")},
            {QStringLiteral("--share|--area"), QStringLiteral("area")},
            {QStringLiteral("--output-window=Managed"), QStringLiteral("'Managed'")},
            {QStringLiteral("--frame=yes"), QStringLiteral("'yes'")},
            {QStringLiteral("--shortcuts=1"), QStringLiteral("--shortcuts")},
            {QStringLiteral("--tray=1"), QStringLiteral("--tray")},
            {QStringLiteral("--shared"), QStringLiteral("shared")},
            {QStringLiteral("--share=1"), QStringLiteral("share")},
            {QStringLiteral("--stop|--select"), QStringLiteral("--select")},
            {QStringLiteral("--pause|--resume"), QStringLiteral("--resume")},
            {QStringLiteral("--move=1,2|--blank"), QStringLiteral("--blank")},
            {QStringLiteral("--move=1,2,3"), QStringLiteral("'1,2,3'")},
            {QStringLiteral("--move=1,2,3x"), QStringLiteral("'1,2,3x'")},
            {QStringLiteral("--move=1"), QStringLiteral("'1'")},
            {QStringLiteral("--share|--save"), QStringLiteral("--save")},
            {QStringLiteral("--size=12 x9"), QStringLiteral("'12 x9'")},
            {QStringLiteral("--use=a|--area=1,2,3x4"), QStringLiteral("--use")},
            {QStringLiteral("--areas|--status"), QStringLiteral("--areas")},
            {QStringLiteral("--json"), QStringLiteral("--areas")},
            {QStringLiteral("--forget"), QStringLiteral("forget")},
            {QStringLiteral("--share|a\nb"), QStringLiteral("a b")},
            {QStringLiteral("--|--share"), QStringLiteral("--share")}};
        for (const char *area :
             {"abc", "10,20", "10,20,300,200", "10,20,300x", "10,20,300X200", "a,20,300x200",
              "10,20,300x200px", " 10,20,300x200", "10,20,300\u00d7200"}) {
            const QString text = QString::fromUtf8(area);
            rows.emplace_back(QStringLiteral("--area=") + text, text.trimmed());
        }
        for (const auto &[arguments, named] : rows) {
            const auto options = launchOptions(arguments.split(u'|'));
            QVERIFY2(!options, qPrintable(arguments));
            QVERIFY2(options.error().contains(named), qPrintable(options.error()));
            QVERIFY(!options.error().contains(u'\n'));
        }
    }
};

QTEST_APPLESS_MAIN(LaunchOptionsTest)
#include "LaunchOptionsTest.moc"
