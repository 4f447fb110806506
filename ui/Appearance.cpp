// SPDX-License-Identifier: MIT
#include "ui/Appearance.h"

#include "platform/Palette.h"
#include "ui/FlatStyle.h"
#include "ui/Log.h"
#include "ui/Theme.h"

#include <QApplication>

namespace glimmerpane
{

namespace
{

QString baseStyle()
{
    const QString platformStyle = QApplication::style()->name();
    const bool isBare = platformStyle.compare(QStringLiteral("windows"), Qt::CaseInsensitive) == 0;
    return isBare || platformStyle.isEmpty() ? QStringLiteral("fusion") : platformStyle;
}

} // namespace

Appearance::Appearance()
{
    QApplication::setStyle(new FlatStyle(baseStyle()));
    connect(&portal_, &ColorSchemePortal::colorSchemeTold, this, &Appearance::apply);
    portal_.start();
}

void Appearance::apply(ColorScheme scheme)
{
    qCInfo(uiLog) << "the desktop's color scheme is now" << static_cast<int>(scheme);
    QApplication::setPalette(QPalette()); // back to the platform's own
    const bool isDarkNow = isDark(QApplication::palette());
    if (scheme == ColorScheme::Dark && !isDarkNow) {
        QApplication::setPalette(darkPalette());
    } else if (scheme == ColorScheme::Light && isDarkNow) {
        QApplication::setPalette(lightPalette());
    }
}

} // namespace glimmerpane
