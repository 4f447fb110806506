// SPDX-License-Identifier: MIT
#pragma once

#include "rig/CapturedWindow.h"
#include "rig/ColorWindow.h"
#include "rig/GnomeSession.h"
#include "rig/PictureComparison.h"

#include <QDBusConnectionInterface>
#include <QDBusReply>
#include <QFile>

#include <algorithm>
#include <chrono>
#include <functional>

namespace glimmerpane::testing
{

constexpr std::chrono::seconds patience{15};
constexpr QRect area(920, 300, 340, 380); ///< desktop pixels; the portal's dialog is beside it
inline const QString mainTitle = QStringLiteral("Glimmerpane");
inline const QString outputTitle = QStringLiteral("Glimmerpane - Output");

constexpr QPoint stopRecordingPlace(1204, 16); ///< in the shell's bar, 1280 points wide

/** The program in a GNOME session, and what a viewer of its output window sees. */
struct GnomeFixture {
    explicit GnomeFixture(const QString &backend, const GnomeSession::Options &options = {})
        : session(options)
        , backend_(backend)
    {
    }

    GnomeSession session;
    const XClient client = required(XClient::connect(session.displayName()));
    const ColorWindow red = required(
        ColorWindow::show(client, {.rectangle = {910, 280, 300, 200}, .color = 0xffff0000}));
    const ColorWindow changing = required(
        ColorWindow::show(client, {.rectangle = {1000, 350, 111, 97}, .color = 0xff00ff00}));
    const GnomeInput input = session.input();
    mutable GnomeStream monitor = session.recordMonitor(0, GnomeScreenCast::Pointer::Embedded);
    const GnomeSession::PortalDialog dialog = session.portalDialog();
    ChildProcess program;

    /** Starts the program, which shares. The area is given in Xwayland's pixels. */
    void startSharing(const QRect &rectangle = area, int scale = 1)
    {
        auto environment = session.environment();
        environment.insert(QStringLiteral("QT_SCALE_FACTOR"), QString::number(scale));
        environment.insert(QStringLiteral("QT_LOGGING_RULES"),
                           QStringLiteral("glimmerpane.*.info=true"));
        const int below = client.rootSize().height() - rectangle.y() - rectangle.height();
        const QString place = QStringLiteral("--area=%1,%2,%3x%4")
                                  .arg(rectangle.x() / scale)
                                  .arg(below / scale)
                                  .arg(rectangle.width() / scale)
                                  .arg(rectangle.height() / scale);
        program = required(ChildProcess::start(
            {.program = QStringLiteral(GLIMMERPANE_PROGRAM),
             .arguments = {QStringLiteral("--backend=") + backend_, place, share_},
             .environment = environment}));
    }
    /** The same, and answers the portal's dialog. */
    void share()
    {
        showPointer();
        startSharing();
        if (backend_ == u"portal") {
            if (dialog.firstMonitor) {
                answer(*dialog.firstMonitor);
            }
            answer(dialog.share);
        }
    }
    /** Moves it: the shell has no image of a pointer that was never shown. */
    void showPointer()
    {
        const auto corner = [this] { return seen({0, 600, 200, 100}); };
        require(waitFor([&] { return !corner().isNull(); }, patience), "the monitor shows nothing");
        const QImage empty = corner();
        input.moveTo({100, 650});
        require(waitFor([&] { return corner() != empty; }, patience), "there is no pointer");
    }
    /**
     * Presses on the frame's handle, which is there. Returns once the X server knows: a press that
     * moves follow within milliseconds does not always get there.
     */
    void pressOnFrame(QPoint handle) const
    {
        const auto pointer = [this] {
            return ask<xcb_query_pointer, xcb_query_pointer_reply>(client, client.root());
        };
        const auto isOn = [&] {
            const auto now = pointer();
            return now && titleOf(client, now->child) == u"Glimmerpane - Frame";
        };
        input.moveTo({100, 650});
        require(waitFor([&] { return !isOn(); }, patience), "the pointer stays on the frame");
        input.moveTo(handle);
        require(waitFor(isOn, patience), "the pointer does not get to the handle");
        input.press();
        const auto isPressed = [&] {
            const auto now = pointer();
            return now && (now->mask & XCB_BUTTON_MASK_1) != 0;
        };
        require(waitFor(isPressed, patience), "the press does not get to the X server");
    }
    /**
     * Clicks in the portal's dialog, on a monitor of 1280x720 points with `scale` pixels each,
     * until that changes it.
     */
    void answer(QPoint place, double scale = 1) const
    {
        const auto inPixels = [scale](const QRect &points) {
            return QRect(points.topLeft() * scale, points.size() * scale);
        };
        // The shell lists it before it paints it.
        const QRect edge(dialog.place.left() + 10, dialog.place.center().y(), 1, 1);
        const auto isPainted
            = [&] { return seen(inPixels(edge)).pixelColor(0, 0).lightness() > 200; };
        require(waitFor([&] { return session.isPortalDialogShown() && isPainted(); }, patience),
                "no dialog is shown");
        const auto look = [&] { return seen(inPixels(dialog.place)); };
        input.moveTo(place * scale);
        const QImage calm = settled(look);
        const auto isChanged = [&] { return look() != calm || !session.isPortalDialogShown(); };
        // What an earlier click has changed may be seen late; another one would hit something else.
        const auto takesClick = [&] {
            input.click(place * scale);
            return waitFor(isChanged, std::chrono::seconds(2));
        };
        require(takesClick() || waitFor([&] { return isChanged() || takesClick(); }, patience),
                "the dialog takes no click");
    }
    /** Stops what the shell records, which ends our own view and input, too. */
    void stopRecording() const
    {
        input.moveTo(stopRecordingPlace);
        try {
            input.press();
            input.release();
        } catch (const Failure &) {
            return; // the press was enough
        }
    }
    /** A picture that stays for a moment: animations have ended. */
    static QImage settled(const std::function<QImage()> &look)
    {
        QImage picture = look();
        while (waitFor([&] { return look() != picture; }, std::chrono::milliseconds(600))) {
            picture = look();
        }
        return picture;
    }
    QByteArray command(const char *option) const
    {
        auto other = required(ChildProcess::start({.program = QStringLiteral(GLIMMERPANE_PROGRAM),
                                                   .arguments = {QString::fromLatin1(option)},
                                                   .environment = session.environment()}));
        return other.waitForEnd(patience) ? other.output() : "it does not end";
    }

    QImage output() const
    {
        const auto window = findWindow(client, outputTitle, Listing::All);
        const auto picture = window ? windowPicture(client, *window) : failure({});
        return picture.value_or(QImage());
    }
    /** Whether it is on no monitor. */
    bool isOutputUnseen() const
    {
        const auto window = findWindow(client, outputTitle, Listing::All);
        const auto place = window ? geometryOf(client, *window) : std::nullopt;
        return place && !place->intersects({0, 0, 0x7fff, 0x7fff});
    }
    bool becomesHidden() const
    {
        return waitFor([this] { return !findWindow(client, outputTitle, Listing::All); }, patience);
    }
    /** How many windows of the program the user sees. */
    auto shownWindows() const
    {
        return std::ranges::count_if(session.windows(), [](const auto &window) {
            return window.windowClass.compare(u"glimmerpane", Qt::CaseInsensitive) == 0
                && window.title != outputTitle;
        });
    }
    bool becomesWindows(int count) const
    {
        return waitFor([&] { return shownWindows() == count; }, patience);
    }
    QImage seen(const QRect &rectangle) const { return monitor->picture().copy(rectangle); }
    bool showsArea(const QRect &rectangle = area) const
    {
        return becomeEqual([&] { return output(); }, [&] { return seen(rectangle); }, patience);
    }
    QByteArray settings() const
    {
        QFile file(session.environment().value(QStringLiteral("XDG_CONFIG_HOME"))
                   + QStringLiteral("/glimmerpane/glimmerpane.ini"));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    bool isAreaSaved() const { return settings().contains("920.0"); }
    pid_t processOf(const QString &service) const
    {
        const QDBusReply<uint> process = session.bus().interface()->servicePid(service);
        return static_cast<pid_t>(process.value());
    }

private:
    const QString backend_;
    const QString share_ = QStringLiteral("--share");
};

} // namespace glimmerpane::testing
