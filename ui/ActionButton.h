// SPDX-License-Identifier: MIT
#pragma once

#include <QPushButton>

namespace glimmerpane
{

/** A large button as wide as its surroundings allow. Takes the focus by the keyboard only. */
class ActionButton : public QPushButton
{
    Q_OBJECT

public:
    enum class Emphasis {
        Plain,
        Accent, ///< filled with the accent colour
        Danger, ///< filled with red; like every button grey while it is disabled
    };

    /** The label names its mnemonic by an ampersand. */
    ActionButton(const QString &label, Emphasis emphasis);

    Emphasis emphasis() const { return emphasis_; }
    QSize sizeHint() const override;

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    const Emphasis emphasis_;
};

} // namespace glimmerpane
