// SPDX-License-Identifier: MIT
#pragma once

#include "ui/ColorSchemePortal.h"

#include <QObject>

namespace glimmerpane
{

/**
 * Sets the application's style and follows the desktop's light or dark preference where Qt does
 * not. Requires a QApplication; create it before the first window.
 */
class Appearance : public QObject
{
    Q_OBJECT

public:
    Appearance();

private:
    void apply(ColorScheme scheme);

    ColorSchemePortal portal_;
};

} // namespace glimmerpane
