// SPDX-License-Identifier: MIT
#pragma once

#include <QMenu>
#include <QObject>
#include <QStringList>

namespace glimmerpane
{

/** The menu of the icon in the tray. Almost every entry stands for a command line. Main thread. */
class TrayMenu : public QObject
{
    Q_OBJECT

public:
    TrayMenu();

    /** What a person can do at the moment. */
    struct Situation {
        bool isShared = false; ///< or about to be
        bool isPaused = false;
        bool canStart = true; ///< also to select the area
        bool hasFrame = false; ///< around the area, while it is shared
    };
    void adapt(const Situation &situation);
    /** The areas that are stored under names. */
    void setAreaNames(const QStringList &names);

    QMenu &menu() { return menu_; }

Q_SIGNALS:
    void commandChosen(const QStringList &arguments);
    void quitChosen();
    /** The menu is being opened, or a part of it. */
    void opening();

private:
    QAction *add(QMenu &menu, const QString &text, const QStringList &arguments);

    QMenu menu_;
    QAction *start_;
    QAction *stop_;
    QAction *pause_;
    QAction *resume_;
    QAction *blank_;
    QAction *frame_;
    QAction *select_;
    QMenu *areas_;
    QStringList areaNames_;
};

} // namespace glimmerpane
