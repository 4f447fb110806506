// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractButton>

namespace glimmerpane
{

/** A small round, flat window button. */
class WindowControl : public QAbstractButton
{
    Q_OBJECT

public:
    enum class Kind {
        Minimize,
        Close,
    };

    WindowControl(Kind kind, const QString &name, QWidget *parent);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const Kind kind_;
};

} // namespace glimmerpane
