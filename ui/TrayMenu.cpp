// SPDX-License-Identifier: MIT
#include "ui/TrayMenu.h"

namespace glimmerpane
{

namespace
{

/**
 * As the desktop's menus show it unchanged: they take an underscore for a mnemonic (libdbusmenu),
 * and Qt makes one of the first ampersand.
 */
QString labelOf(QString name)
{
    name.replace(u'_', QStringLiteral("__"));
    const auto first = name.indexOf(u'&');
    return first < 0 ? name : name.insert(first, u'&');
}

} // namespace

TrayMenu::TrayMenu()
{
    start_ = add(menu_, tr("Start sharing"), {QStringLiteral("--share")});
    stop_ = add(menu_, tr("Stop sharing"), {QStringLiteral("--stop")});
    pause_ = add(menu_, tr("Pause"), {QStringLiteral("--pause")});
    resume_ = add(menu_, tr("Resume"), {QStringLiteral("--resume")});
    blank_ = add(menu_, tr("Pause and hide the picture"), {QStringLiteral("--blank")});
    frame_ = menu_.addAction(tr("Frame around the area"));
    frame_->setCheckable(true);
    connect(frame_, &QAction::triggered, this, [this](bool isOn) {
        frame_->setChecked(!isOn); // until that is so
        Q_EMIT commandChosen({isOn ? QStringLiteral("--frame=on") : QStringLiteral("--frame=off")});
    });
    menu_.addSeparator();
    select_ = add(menu_, tr("Select area"), {QStringLiteral("--select")});
    QMenu *const sizes = menu_.addMenu(tr("Size of the area"));
    for (const QString &size : {QStringLiteral("1280x720"), QStringLiteral("1920x1080"),
                                QStringLiteral("16:9"), QStringLiteral("4:3")}) {
        add(*sizes, size, {QStringLiteral("--size=") + size});
    }
    areas_ = menu_.addMenu(tr("Named areas"));
    areas_->setEnabled(false);
    menu_.addSeparator();
    add(menu_, tr("Show window"), {});
    connect(menu_.addAction(tr("Quit")), &QAction::triggered, this, &TrayMenu::quitChosen);
    for (const QMenu *menu : {&menu_, areas_}) {
        connect(menu, &QMenu::aboutToShow, this, &TrayMenu::opening);
    }
}

QAction *TrayMenu::add(QMenu &menu, const QString &text, const QStringList &arguments)
{
    QAction *const action = menu.addAction(text);
    connect(action, &QAction::triggered, this,
            [this, arguments] { Q_EMIT commandChosen(arguments); });
    return action;
}

void TrayMenu::adapt(const Situation &situation)
{
    start_->setVisible(!situation.isShared);
    start_->setEnabled(situation.canStart);
    stop_->setVisible(situation.isShared);
    pause_->setVisible(!situation.isPaused);
    pause_->setEnabled(situation.isShared);
    resume_->setVisible(situation.isPaused);
    blank_->setEnabled(situation.isShared);
    frame_->setChecked(situation.hasFrame);
    select_->setEnabled(situation.canStart);
}

void TrayMenu::setAreaNames(const QStringList &names)
{
    if (std::exchange(areaNames_, names) == names) {
        return; // the desktop shows the menu, and would read it anew
    }
    areas_->clear();
    areas_->setEnabled(!names.isEmpty());
    for (const QString &name : names) {
        add(*areas_, labelOf(name), {QStringLiteral("--use=") + name});
    }
}

} // namespace glimmerpane
