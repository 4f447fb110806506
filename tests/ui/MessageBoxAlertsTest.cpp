// SPDX-License-Identifier: MIT
#include "ui/MessageBoxAlerts.h"
#include "tests/ui/PrivateDisplay.h"
#include "ui/FlatStyle.h"

#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

#include <functional>

using namespace glimmerpane;

namespace
{

/** Runs the alert and does `answer` once it is up. */
int runModal(const Alert &alert, const std::function<void(QMessageBox &)> &answer)
{
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &poll, [&] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (box && box->isActiveWindow()) {
            poll.stop();
            answer(*box);
        }
    });
    poll.start(5);
    MessageBoxAlerts alerts;
    return alerts.runModal(alert);
}

QList<QPushButton *> buttonsFromLeft(const QMessageBox &box)
{
    auto buttons = box.findChildren<QPushButton *>();
    std::ranges::sort(buttons, {}, [](const QPushButton *button) { return button->x(); });
    return buttons;
}

} // namespace

class MessageBoxAlertsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setStyle(new FlatStyle(QStringLiteral("fusion"))); }

    void runModal_returnsTheIndexOfTheAnswer_data()
    {
        using Answer = std::function<void(QMessageBox &)>;
        const auto press = [](Qt::Key key) -> Answer {
            return [key](QMessageBox &box) { QTest::keyClick(box.windowHandle(), key); };
        };
        const auto click = [](int index) -> Answer {
            return [index](QMessageBox &box) {
                QTest::mouseClick(buttonsFromLeft(box)[index], Qt::LeftButton);
            };
        };
        const Answer close = [](QMessageBox &box) { box.close(); };
        const Answer quit = [](QMessageBox &box) { box.hide(); };
        const QStringList two{QStringLiteral("Open System Settings"), QStringLiteral("Cancel")};
        const QStringList one{QStringLiteral("OK")};
        QTest::addColumn<QStringList>("buttons");
        QTest::addColumn<Answer>("answer");
        QTest::addColumn<int>("result");
        QTest::newRow("Return") << two << press(Qt::Key_Return) << 0;
        QTest::newRow("Escape") << two << press(Qt::Key_Escape) << 1;
        QTest::newRow("Escape, one button") << one << press(Qt::Key_Escape) << 0;
        QTest::newRow("click on the first") << two << click(0) << 0;
        QTest::newRow("click on the second") << two << click(1) << 1;
        QTest::newRow("window closed") << two << close << 1;
        QTest::newRow("taken away") << two << quit << -1;
    }
    void runModal_returnsTheIndexOfTheAnswer()
    {
        QFETCH(QStringList, buttons);
        QFETCH(std::function<void(QMessageBox &)>, answer);
        QFETCH(int, result);
        const Alert alert{.messageText = QStringLiteral("text"),
                          .informativeText = QStringLiteral("details"),
                          .buttons = buttons};
        QCOMPARE(runModal(alert, answer), result);
    }

    void runModal_showsTextsAsTheyAreAndButtonsInOrder()
    {
        const Alert alert{
            .messageText = QStringLiteral("Screen Capture"),
            .informativeText = QStringLiteral("Failed: <b>no</b>\nstream"),
            .buttons = {QStringLiteral("Zoom"), QStringLiteral("Apply"), QStringLiteral("Cancel")}};
        QStringList labels;
        QString details;
        Qt::TextFormat format{};
        Qt::WindowModality modality{};
        runModal(alert, [&](QMessageBox &box) {
            for (const auto *button : buttonsFromLeft(box)) {
                labels.append(button->text());
            }
            const auto *label
                = box.findChild<QLabel *>(QStringLiteral("qt_msgbox_informativelabel"));
            details = label->text();
            format = label->textFormat();
            modality = box.windowModality();
            box.close();
        });
        QCOMPARE(labels, alert.buttons);
        QCOMPARE(details, alert.informativeText);
        QCOMPARE(format, Qt::PlainText);
        QCOMPARE(modality, Qt::ApplicationModal);
    }

    void runModal_returns_whenTheParentWindowGoes()
    {
        auto *parent = new QWidget;
        parent->show();
        MessageBoxAlerts alerts;
        alerts.setParentWindow(parent);
        QTimer::singleShot(0, parent, [parent] { delete parent; });
        const Alert alert{.messageText = QStringLiteral("text"),
                          .informativeText = {},
                          .buttons = {QStringLiteral("OK")}};
        QCOMPARE(alerts.runModal(alert), -1);
    }
};

int main(int argc, char **argv)
{
    return testing::runOnPrivateDisplay<MessageBoxAlertsTest>(argc, argv);
}

#include "MessageBoxAlertsTest.moc"
