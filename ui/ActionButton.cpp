// SPDX-License-Identifier: MIT
#include "ui/ActionButton.h"

#include <QKeyEvent>

#include <algorithm>

namespace glimmerpane
{

ActionButton::ActionButton(const QString &label, Emphasis emphasis)
    : QPushButton(label)
    , emphasis_(emphasis)
{
    setFocusPolicy(Qt::TabFocus);
    setAutoDefault(true); // Return presses the focused button, like the space bar
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setAttribute(Qt::WA_Hover);
}

void ActionButton::keyPressEvent(QKeyEvent *event)
{
    // A held key would also press the button that replaces this one.
    if (!event->isAutoRepeat() || event->key() == Qt::Key_Tab || event->key() == Qt::Key_Backtab) {
        QPushButton::keyPressEvent(event);
    }
}

QSize ActionButton::sizeHint() const
{
    constexpr int smallestHeight = 34;
    const QSize hint = QPushButton::sizeHint();
    return {hint.width(), std::max({hint.height(), smallestHeight, fontMetrics().height() + 18})};
}

} // namespace glimmerpane
