// SPDX-License-Identifier: MIT
#include "ui/MessageBoxAlerts.h"

#include "ui/AlertIcon.h"
#include "ui/Theme.h"

#include <QLabel>
#include <QMessageBox>
#include <QPainter>
#include <QPushButton>

namespace glimmerpane
{

namespace
{

constexpr int closedWithoutAnswer = -1;

/**
 * Has a border of its own if no window manager adds one; otherwise it would blend into the main
 * window.
 */
class AlertBox : public QMessageBox
{
public:
    using QMessageBox::QMessageBox;

protected:
    void paintEvent(QPaintEvent *event) override
    {
        QMessageBox::paintEvent(event);
        if (frameGeometry() == geometry()) {
            const double width = borderWidth(devicePixelRatioF()) / devicePixelRatioF();
            QPainter painter(this);
            painter.setPen(QPen(themeFor(palette()).windowBorder, width, Qt::SolidLine,
                                Qt::SquareCap, Qt::MiterJoin));
            painter.setRenderHint(QPainter::Antialiasing);
            const double inset = width / 2;
            painter.drawRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset));
        }
    }
};

/** The same role for all buttons, which keeps their order. */
QList<QAbstractButton *> addButtons(QMessageBox &box, const Alert &alert)
{
    QList<QAbstractButton *> buttons;
    for (const QString &label : alert.buttons) {
        QPushButton *button = box.addButton(label, QMessageBox::ActionRole);
        button->setAccessibleName(label);
        if (buttons.isEmpty()) {
            box.setDefaultButton(button);
        }
        buttons.append(button);
    }
    box.setEscapeButton(alert.escapesToFirst ? buttons.first() : buttons.last());
    return buttons;
}

void styleTexts(const QMessageBox &box)
{
    QPalette palette;
    setSelectionColors(palette, themeFor(box.palette()));
    for (auto *text : box.findChildren<QLabel *>()) {
        text->setPalette(palette);
    }
    if (auto *headline = box.findChild<QLabel *>(QStringLiteral("qt_msgbox_label"))) {
        QFont font = headline->font();
        font.setWeight(QFont::DemiBold);
        headline->setFont(font);
    }
    if (auto *details = box.findChild<QLabel *>(QStringLiteral("qt_msgbox_informativelabel"))) {
        details->setTextFormat(Qt::PlainText); // it may quote another program
        constexpr int charactersInLine = 44; // otherwise long texts become a narrow column
        details->setMinimumWidth(details->fontMetrics().averageCharWidth() * charactersInLine);
    }
}

} // namespace

int MessageBoxAlerts::runModal(const Alert &alert)
{
    // On the heap and tracked: the parent window deletes it if destroyed while the alert is open.
    const QPointer<QMessageBox> box(new AlertBox(parentWindow_));
    box->setWindowTitle(QStringLiteral("Glimmerpane"));
    box->setWindowModality(Qt::ApplicationModal);
    box->setIconPixmap(alertIcon(alert.style, themeFor(box->palette()), box->devicePixelRatioF()));
    box->setTextFormat(Qt::PlainText);
    box->setText(alert.messageText);
    box->setInformativeText(alert.informativeText);
    const auto buttons = addButtons(*box, alert);
    box->setAccessibleName(alert.messageText);
    box->setAccessibleDescription(alert.informativeText);
    styleTexts(*box);
    box->exec();
    if (!box) {
        return closedWithoutAnswer;
    }
    const auto answer = buttons.indexOf(box->clickedButton());
    delete box;
    return static_cast<int>(answer);
}

} // namespace glimmerpane
