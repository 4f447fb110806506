// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QLabel>

namespace glimmerpane
{

struct Theme;

/**
 * A line of text that can be copied. Tab selects all of it, as in a text field, and shows a focus
 * ring; the copy key copies the whole line if nothing is selected.
 */
class SelectableLine : public QLabel
{
    Q_OBJECT

public:
    static constexpr int ringRoom = 3; ///< around the text

    SelectableLine();

    void setColors(const Theme &theme);

protected:
    void focusInEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QColor ring_;
};

} // namespace glimmerpane
