// SPDX-License-Identifier: MIT
#include "ui/ActionButton.h"

#include <algorithm>

namespace glimmerpane
{

ActionButton::ActionButton(const QString &label, Emphasis emphasis)
    : QPushButton(label)
    , emphasis_(emphasis)
{
    setAccessibleName(label);
    setFocusPolicy(Qt::TabFocus);
    setAutoDefault(true); // Return presses the focused button, as the space bar does
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setAttribute(Qt::WA_Hover);
}

QSize ActionButton::sizeHint() const
{
    constexpr int smallestHeight = 34;
    const QSize hint = QPushButton::sizeHint();
    return {hint.width(), std::max({hint.height(), smallestHeight, fontMetrics().height() + 18})};
}

} // namespace glimmerpane
