// SPDX-License-Identifier: MIT
#pragma once

#include <QProxyStyle>

class QStyleOptionButton;

namespace glimmerpane
{

/**
 * Flat rounded buttons and text fields in the palette's colours, over any other style. Underlines
 * mnemonics while Alt is held.
 */
class FlatStyle : public QProxyStyle
{
    Q_OBJECT

public:
    /** `baseStyle` is the key of the style that draws everything else. */
    explicit FlatStyle(const QString &baseStyle);

    using QProxyStyle::polish;
    void polish(QApplication *application) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &contents,
                           const QWidget *widget) const override;
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *returnData) const override;

private:
    void drawPushButton(const QStyleOptionButton &option, QPainter &painter,
                        const QWidget *widget) const;
    void showMnemonics(bool shown);

    bool showsMnemonics_ = false;
};

} // namespace glimmerpane
