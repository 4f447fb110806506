// SPDX-License-Identifier: MIT
#include "demo/Backdrop.h"

#include "rig/SharedPicture.h"

#include <QPainter>

namespace glimmerpane::demo
{

namespace
{

QFont sized(int pixels, bool bold = false)
{
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(pixels);
    font.setBold(bold);
    return font;
}

void paintWallpaper(QPainter &painter, const QRect &screen)
{
    QLinearGradient sky(screen.topLeft(), screen.bottomRight());
    sky.setColorAt(0, QColor(0x1d, 0x2b, 0x48));
    sky.setColorAt(0.6, QColor(0x3c, 0x5a, 0x7d));
    sky.setColorAt(1, QColor(0xc2, 0x8f, 0x6a));
    painter.fillRect(screen, sky);
    painter.setPen(Qt::NoPen);
    for (int hill = 0; hill < 3; ++hill) {
        painter.setBrush(QColor(0x16 + hill * 10, 0x2a + hill * 12, 0x3a + hill * 8, 150));
        painter.drawEllipse(QPoint(300 + hill * 700, screen.height() + 260), 900, 480);
    }
    const QRect bar(0, 0, screen.width(), 30);
    painter.fillRect(bar, QColor(0x10, 0x16, 0x22));
    painter.setPen(QColor(0xe4, 0xe8, 0xee));
    painter.setFont(sized(14));
    painter.drawText(bar.adjusted(14, 0, -14, 0), Qt::AlignVCenter | Qt::AlignLeft,
                     QStringLiteral("Activities"));
    painter.drawText(bar, Qt::AlignCenter, QStringLiteral("Tuesday 10:24"));
}

void drawWindow(QPainter &painter, const QRect &frame, const QString &title,
                const QStringList &lines)
{
    painter.setPen(QColor(0, 0, 0, 90));
    painter.setBrush(QColor(0xfb, 0xfb, 0xf8));
    painter.drawRoundedRect(frame, 8, 8);
    const QRect head(frame.topLeft(), QSize(frame.width(), 36));
    painter.setBrush(QColor(0xdd, 0xe1, 0xe7));
    painter.drawRoundedRect(head, 8, 8);
    painter.setPen(QColor(0x33, 0x38, 0x42));
    painter.setFont(sized(14, true));
    painter.drawText(head, Qt::AlignCenter, title);
    painter.setFont(sized(15));
    QRect line(frame.left() + 24, head.bottom() + 18, frame.width() - 48, 26);
    for (const QString &text : lines) {
        painter.drawText(line, Qt::AlignVCenter | Qt::AlignLeft, text);
        line.translate(0, line.height());
    }
}

} // namespace

QImage drawWallpaper(QSize screen)
{
    QImage picture(screen, QImage::Format_RGB32);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    paintWallpaper(painter, picture.rect());
    return picture;
}

QImage drawBackdrop(QSize screen, const QRect &area, bool outlined)
{
    QImage picture = drawWallpaper(screen);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    drawWindow(painter, QRect(area.left() + 40, area.top() + 50, 500, 330),
               QStringLiteral("Agenda"),
               {QStringLiteral("1. What changed since last week"),
                QStringLiteral("2. Numbers of the quarter"),
                QStringLiteral("3. Demonstration"),
                QStringLiteral("4. Questions"),
                {},
                QStringLiteral("Only what is inside the line is shared."),
                QStringLiteral("The rest of this display stays private.")});
    drawWindow(painter, QRect(area.left() + 90, area.bottom() - 240, 620, 380),
               QStringLiteral("Notes, half inside"),
               {QStringLiteral("The upper part of this window can be seen in the call,"),
                QStringLiteral("the lower part cannot.")});
    if (!outlined) {
        return picture;
    }
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor(0xff, 0xd1, 0x5c), 1, Qt::DashLine));
    painter.drawRect(area.adjusted(-2, -2, 1, 1));
    return picture;
}

testing::Result<void> setBackground(const testing::XClient &client, const QImage &picture)
{
    auto shared = testing::SharedPicture::create(client, picture.size());
    if (!shared) {
        return testing::failure(shared.error());
    }
    QPainter(&shared->image()).drawImage(0, 0, picture);
    auto *connection = client.connection();
    const xcb_pixmap_t pixmap = client.newId();
    const xcb_gcontext_t context = client.newId();
    xcb_create_pixmap(connection, client.screen().root_depth, pixmap, client.root(),
                      static_cast<uint16_t>(picture.width()),
                      static_cast<uint16_t>(picture.height()));
    xcb_create_gc(connection, context, pixmap, 0, nullptr);
    shared->put(client, pixmap, context, picture.rect(), {});
    const auto cookie = xcb_change_window_attributes_checked(connection, client.root(),
                                                             XCB_CW_BACK_PIXMAP, &pixmap);
    xcb_clear_area(connection, 0, client.root(), 0, 0, 0, 0);
    xcb_free_gc(connection, context);
    xcb_free_pixmap(connection, pixmap);
    return client.check(cookie, QStringLiteral("cannot set the background"));
}

} // namespace glimmerpane::demo
