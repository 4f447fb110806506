// SPDX-License-Identifier: MIT
#include "ui/MessageBoxAlerts.h"
#include "tests/ui/PrivateDisplay.h"

#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

#include <functional>

using namespace glimmerpane;

using Answer = std::function<void(QMessageBox &)>;

class MessageBoxAlertsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void runModal_showsTheAlertAndReturnsTheAnswer()
    {
        const auto press = [](Qt::Key key) -> Answer {
            return [key](QMessageBox &box) { QTest::keyClick(box.windowHandle(), key); };
        };
        const Answer click = [](QMessageBox &box) {
            const QPoint nearRightEnd(box.width() - 40, box.height() - 25);
            QTest::mouseClick(box.windowHandle(), Qt::LeftButton, {}, nearRightEnd);
        };
        const Answer hide = [](QMessageBox &box) { box.hide(); };
        const Answer takeParent = [](QMessageBox &box) { delete box.parentWidget(); };
        const QStringList two{QStringLiteral("Open System Settings"), QStringLiteral("Cancel")};
        const QStringList one{QStringLiteral("OK")};
        for (const auto &[buttons, answer, result, escapesToFirst] :
             {std::tuple(two, press(Qt::Key_Return), 0, false),
              {two, press(Qt::Key_Escape), 1, false},
              {two, press(Qt::Key_Escape), 0, true},
              {one, press(Qt::Key_Escape), 0, false},
              {two, click, 1, true},
              {two, hide, -1, false},
              {two, takeParent, -1, false}}) {
            const QPointer parent(new QWidget);
            parent->show();
            MessageBoxAlerts alerts;
            alerts.setParentWindow(parent);
            Qt::TextFormat format{};
            Qt::WindowModality modality{};
            QTimer::singleShot(0, this, [&, &answer = answer] {
                auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
                QVERIFY(QTest::qWaitForWindowActive(box));
                format = box->findChild<QLabel *>(QStringLiteral("qt_msgbox_informativelabel"))
                             ->textFormat();
                modality = box->windowModality();
                answer(*box);
            });
            QCOMPARE(alerts.runModal({.messageText = QStringLiteral("Screen Capture"),
                                      .informativeText = QStringLiteral("Failed: <b>no</b>"),
                                      .buttons = buttons,
                                      .escapesToFirst = escapesToFirst}),
                     result);
            QCOMPARE(format, Qt::PlainText);
            QCOMPARE(modality, Qt::ApplicationModal);
            delete parent;
        }
    }

    void alert_cutsNothingOff_whateverTheFontSize()
    {
        const QFont normal = QApplication::font();
        for (const int scale : {1, 2}) {
            QFont font = normal;
            font.setPointSizeF(normal.pointSizeF() * scale);
            QApplication::setFont(font);
            int looked = 0;
            QTimer::singleShot(0, this, [&looked] {
                auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
                for (const auto *part : box->findChildren<QWidget *>()) {
                    QVERIFY2(testing::isWhole(*part), qPrintable(part->objectName()));
                    ++looked;
                }
                box->hide();
            });
            MessageBoxAlerts().runModal(
                {.messageText = QStringLiteral("Screen Recording Permission"),
                 .informativeText = QStringLiteral("Permit it in the settings. ").repeated(9),
                 .buttons = {QStringLiteral("Open System Settings"), QStringLiteral("Cancel")}});
            QVERIFY(looked >= 5); // icon, two texts, two buttons
        }
        QApplication::setFont(normal);
    }
};

int main(int argc, char **argv)
{
    return testing::runOnPrivateDisplay<MessageBoxAlertsTest>(argc, argv);
}

#include "MessageBoxAlertsTest.moc"
