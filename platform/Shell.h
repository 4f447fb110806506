// SPDX-License-Identifier: MIT
#pragma once

#include <QRegion>
#include <QString>
#include <QUrl>

class QWindow;

namespace glimmerpane
{

/** What the desktop does for this program's own windows and for its user. Main thread. */
class Shell
{
public:
    virtual ~Shell() = default;

    /**
     * Raises and focuses one of this program's windows because the user has just launched the
     * program; `startupId` belongs to that launch, or is empty.
     */
    virtual void activateWindow(QWindow &window, const QString &startupId) = 0;

    /** Whether the desktop says that the window has the focus; Qt may be late to know. */
    virtual bool isActive(const QWindow &window) = 0;

    /**
     * Limits one of this program's windows to a region of its pixels, both for drawing and for
     * clicks. Does nothing if windows can only be rectangles.
     */
    virtual void setShape(QWindow &window, const QRegion &pixels) = 0;

    /** Opens the desktop's settings program. False if none is known. */
    virtual bool openPrivacySettings() = 0;

    /** Shows a desktop notification. Silent if that is not possible. */
    virtual void notify(const QString &title, const QString &text) = 0;

    /** Opens a URL in the user's preferred program. */
    virtual void openUrl(const QUrl &url) = 0;
};

} // namespace glimmerpane
