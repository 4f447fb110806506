// SPDX-License-Identifier: MIT
#pragma once

#include "ui/ColorSchemePortal.h"

#include <QObject>

namespace glimmerpane
{

/**
 * Gives the application its style and follows the desktop's choice of light or dark where Qt does
 * not. Needs the QApplication; make it before the first window.
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
