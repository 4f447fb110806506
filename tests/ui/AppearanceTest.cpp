// SPDX-License-Identifier: MIT
#include "ui/Appearance.h"
#include "platform/Palette.h"
#include "rig/SessionBus.h"
#include "rig/SettingsPortal.h"
#include "tests/ui/PrivateDisplay.h"
#include "ui/Theme.h"

#include <QFile>
#include <QTemporaryDir>

using namespace glimmerpane;

class AppearanceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void appearance_followsThePortal()
    {
        testing::SettingsPortal portal(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"));
        QVERIFY(portal.isThere());

        QVERIFY(!isDark(QApplication::palette()));
        const Appearance appearance;
        QTRY_VERIFY(isDark(QApplication::palette()));
        constexpr uint prefersDark = testing::SettingsPortal::dark;
        constexpr uint ofALaterVersion = 7;
        for (const uint scheme :
             {testing::SettingsPortal::light, prefersDark, 0U, prefersDark, ofALaterVersion}) {
            portal.change(scheme);
            QTRY_COMPARE(isDark(QApplication::palette()), scheme == prefersDark);
        }
    }

    void theme_isReadable()
    {
        QPalette paleHighlight = lightPalette();
        paleHighlight.setColor(QPalette::Highlight, QColor(250, 220, 90));
        QPalette weakText = lightPalette();
        weakText.setColor(QPalette::WindowText, QColor(80, 80, 80));
        for (const QPalette &palette :
             {QPalette(), lightPalette(), darkPalette(), paleHighlight, weakText}) {
            const Theme theme = themeFor(palette);
            for (const QColor &around : {theme.window, theme.field, theme.control}) {
                QVERIFY2(contrast(theme.focusRing, around) >= 3, qPrintable(around.name()));
            }
            const std::pair<QColor, QColor> texts[]{
                {theme.text, theme.window},
                {theme.text, theme.control},
                {palette.color(QPalette::Text), theme.field},
                {theme.secondaryText, theme.window},
                {theme.secondaryText, theme.field},
                {theme.onAccent, theme.accent},
                {theme.onDanger, theme.danger},
            };
            for (const auto &[text, background] : texts) {
                QVERIFY2(contrast(text, background) >= 4.5,
                         qPrintable(text.name() + QStringLiteral(" on ") + background.name()));
            }
        }
    }
};

int main(int argc, char **argv)
{
    const auto bus = testing::required(testing::SessionBus::start());
    return testing::runOnPrivateDisplay<AppearanceTest>(argc, argv, bus.address());
}

#include "AppearanceTest.moc"
