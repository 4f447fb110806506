// SPDX-License-Identifier: MIT
#pragma once

#include "services/Alert.h"

#include <QPointer>
#include <QWidget>

namespace glimmerpane
{

/** Shows alerts as application-modal message boxes, over a parent window if one is set. */
class MessageBoxAlerts : public AlertPresenterProtocol
{
public:
    /** Later alerts belong to this window. */
    void setParentWindow(QWidget *window) { parentWindow_ = window; }

    int runModal(const Alert &alert) override;

private:
    QPointer<QWidget> parentWindow_;
};

} // namespace glimmerpane
