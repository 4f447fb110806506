// SPDX-License-Identifier: MIT
#pragma once

#include <QPushButton>

namespace glimmerpane
{

/** A large button as wide as its layout allows. Gets the focus by keyboard only. */
class ActionButton : public QPushButton
{
    Q_OBJECT

public:
    enum class Emphasis {
        Plain,
        Accent, ///< filled with the accent colour
        Danger, ///< filled with red; grey while disabled, like every button
    };

    /** An ampersand in the label marks its mnemonic. */
    ActionButton(const QString &label, Emphasis emphasis);

    Emphasis emphasis() const { return emphasis_; }
    QSize sizeHint() const override;

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    const Emphasis emphasis_;
};

} // namespace glimmerpane
