// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Desktop.h"

namespace glimmerpane::x11
{

/** Whether an X server can be reached. Needs no application object. */
std::expected<void, Error> checkDisplay();

/** The desktop of the X server that $DISPLAY names. Needs a QGuiApplication. */
class X11Desktop : public Desktop
{
public:
    /** Its offscreen windows are of this kind if possible. */
    explicit X11Desktop(OffscreenWindowKind kind = OffscreenWindowKind::Unlisted);

    double scaleFactor() const override;
    std::vector<Display> displays() const override;
    std::expected<ShareableContent, Error> shareableContent() const override;
    void activateWindow(std::uint32_t window, const QString &startupId) override;
    void setShape(std::uint32_t window, const QRegion &pixels) override;
    bool openPrivacySettings() override;
    void notify(const QString &title, const QString &text) override;
    void openUrl(const QUrl &url) override;
    std::expected<std::unique_ptr<OffscreenWindow>, Error> makeOffscreenWindow(const QString &title,
                                                                               QPoint origin,
                                                                               QSize size) override;
    std::expected<std::unique_ptr<OverlayWindow>, Error> makeOverlayWindow(
        const QString &title, QRect area, const FrostedGlass &glass) override;
    std::expected<std::unique_ptr<DisplayLayer>, Error> makeDisplayLayer(
        const OffscreenWindow &window) override;
    std::unique_ptr<PressMonitor> monitorPresses(std::function<void(QPoint)> pressed) override;
    std::unique_ptr<CaptureStream> makeCaptureStream(
        const ContentFilter &filter, const StreamConfiguration &configuration) override;

private:
    const OffscreenWindowKind offscreenWindowKind_;
};

} // namespace glimmerpane::x11
