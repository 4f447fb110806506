// SPDX-License-Identifier: MIT
#include "platform/SettingsProgram.h"

#include <QStringList>

#include <array>
#include <utility>

namespace glimmerpane
{

std::optional<QString> settingsProgram(const QString &currentDesktop)
{
    static constexpr std::array programs{
        std::pair{QStringView(u"GNOME"), QStringView(u"gnome-control-center")},
        std::pair{QStringView(u"KDE"), QStringView(u"systemsettings")},
        std::pair{QStringView(u"XFCE"), QStringView(u"xfce4-settings-manager")},
    };
    const QStringList names = currentDesktop.split(u':');
    for (const auto &[desktop, program] : programs) {
        if (names.contains(desktop, Qt::CaseInsensitive)) {
            return program.toString();
        }
    }
    return std::nullopt;
}

} // namespace glimmerpane
