// SPDX-License-Identifier: MIT
#include "platform/SettingsProgram.h"

#include <QStandardPaths>
#include <QStringList>

#include <array>
#include <utility>

namespace glimmerpane
{

std::optional<QString> settingsProgram(const QString &currentDesktop)
{
    static constexpr std::array programs{
        std::pair{QStringView(u"Budgie"), QStringView(u"budgie-control-center")},
        std::pair{QStringView(u"Deepin"), QStringView(u"dde-control-center")},
        std::pair{QStringView(u"GNOME"), QStringView(u"gnome-control-center")},
        std::pair{QStringView(u"KDE"), QStringView(u"systemsettings")},
        std::pair{QStringView(u"KDE"), QStringView(u"systemsettings5")},
        std::pair{QStringView(u"LXQt"), QStringView(u"lxqt-config")},
        std::pair{QStringView(u"MATE"), QStringView(u"mate-control-center")},
        std::pair{QStringView(u"Unity"), QStringView(u"unity-control-center")},
        std::pair{QStringView(u"X-Cinnamon"), QStringView(u"cinnamon-settings")},
        std::pair{QStringView(u"XFCE"), QStringView(u"xfce4-settings-manager")},
    };
    for (const QString &name : currentDesktop.split(u':')) {
        for (const auto &[desktop, program] : programs) {
            if (name.compare(desktop, Qt::CaseInsensitive) == 0) {
                const QString path = QStandardPaths::findExecutable(program.toString());
                if (!path.isEmpty()) {
                    return path;
                }
            }
        }
    }
    return std::nullopt;
}

} // namespace glimmerpane
