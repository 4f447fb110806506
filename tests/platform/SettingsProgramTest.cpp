// SPDX-License-Identifier: MIT
#include "platform/SettingsProgram.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace glimmerpane;

class SettingsProgramTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void program_isTheFirstOfTheDesktopsThatIsInstalled()
    {
        const QTemporaryDir path;
        qputenv("PATH", QFile::encodeName(path.path()));
        for (const char *name : {"cinnamon-settings", "gnome-control-center", "lxqt-config"}) {
            QFile program(path.filePath(QLatin1String(name)));
            QVERIFY(program.open(QIODevice::WriteOnly) && program.setPermissions(QFile::ExeOwner));
        }
        for (const auto &[desktop, program] : {std::pair("X-Cinnamon", "cinnamon-settings"),
                                               {"ubuntu:gnome", "gnome-control-center"},
                                               {"Budgie:GNOME", "gnome-control-center"},
                                               {"LXQt:GNOME", "lxqt-config"},
                                               {"MATE", ""},
                                               {"i3", ""},
                                               {"", ""}}) {
            const QString expected
                = *program != '\0' ? path.filePath(QLatin1String(program)) : QString();
            QCOMPARE(settingsProgram(QLatin1String(desktop)).value_or(QString()), expected);
        }
    }
};

QTEST_GUILESS_MAIN(SettingsProgramTest)
#include "SettingsProgramTest.moc"
