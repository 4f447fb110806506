// SPDX-License-Identifier: MIT
#pragma once

#include "services/Alert.h"

#include <QPointer>
#include <QWidget>

namespace glimmerpane
{

/** Shows alerts as message boxes that block the whole program, over a window where one is given. */
class MessageBoxAlerts : public AlertPresenterProtocol
{
public:
    /** Alerts from now on belong to this window. */
    void setParentWindow(QWidget *window) { parentWindow_ = window; }

    int runModal(const Alert &alert) override;

private:
    QPointer<QWidget> parentWindow_;
};

} // namespace glimmerpane
