// SPDX-License-Identifier: MIT
#pragma once

#include <QPushButton>

namespace glimmerpane
{

/**
 * A button for dark glass. Its look is its own, the same in light and dark desktops: it has to
 * stand out whatever is behind the glass. The label is made smaller where it does not fit.
 */
class GlassButton : public QPushButton
{
    Q_OBJECT

public:
    enum class Emphasis {
        Plain,
        Accent, ///< what most people want
    };

    GlassButton(const QString &label, Emphasis emphasis, QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QColor fill() const;
    QFont fittingFont(QSizeF room) const;

    const Emphasis emphasis_;
};

} // namespace glimmerpane
