// SPDX-License-Identifier: MIT
#pragma once

#include <QPushButton>

namespace glimmerpane
{

/**
 * A button for dark glass. It looks the same on light and dark desktops, because it has to stand
 * out against anything behind the glass. The label shrinks if it does not fit.
 */
class GlassButton : public QPushButton
{
    Q_OBJECT

public:
    enum class Emphasis {
        Plain,
        Accent, ///< the usual choice
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
