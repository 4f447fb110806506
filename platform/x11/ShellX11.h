// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Shell.h"

namespace glimmerpane::x11
{

/** For windows that are X11 windows. */
class ShellX11 : public Shell
{
public:
    void activateWindow(QWindow &window, const QString &startupId) override;
    bool isActive(const QWindow &window) override;
    void setShape(QWindow &window, const QRegion &pixels) override;
    bool openPrivacySettings() override;
    void notify(const QString &title, const QString &text) override;
    void openUrl(const QUrl &url) override;
};

} // namespace glimmerpane::x11
