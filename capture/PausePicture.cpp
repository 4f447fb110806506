// SPDX-License-Identifier: MIT
#include "capture/PausePicture.h"

#include "services/Error.h"

#include <QFontDatabase>
#include <QFontMetrics>
#include <QPainter>

#include <algorithm>

namespace glimmerpane
{

namespace
{

constexpr QColor background(32, 32, 36);
constexpr QColor foreground(235, 235, 240);
constexpr int largestText = 200; ///< pixels; the server takes an image of it in one request

/** The largest font whose text takes at most three fifths of the width and a quarter of the height.
 */
QFont fittingFont(const QString &text, QSize window)
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setPixelSize(std::clamp(window.height() / 4, 1, largestText));
    const int width = QFontMetrics(font).horizontalAdvance(text);
    const int widest = std::max(1, window.width() * 3 / 5);
    if (width > widest) {
        font.setPixelSize(std::max(1, font.pixelSize() * widest / width));
    }
    return font;
}

} // namespace

PausePictureLook pausePicture(QSize window)
{
    const QString text = Error::tr("Paused");
    const QFont font = fittingFont(text, window);
    const QSize size = QFontMetrics(font).size(Qt::TextSingleLine, text).boundedTo(window);
    QImage image(size.expandedTo({1, 1}), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setFont(font);
    painter.setPen(foreground);
    painter.drawText(image.rect(), Qt::AlignCenter, text);
    return {.background = background, .text = image};
}

} // namespace glimmerpane
