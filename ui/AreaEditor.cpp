// SPDX-License-Identifier: MIT
#include "ui/AreaEditor.h"

#include "ui/Theme.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QScopedValueRollback>

#include <algorithm>
#include <cstdio>

namespace glimmerpane
{

namespace
{

struct Field {
    QString label;
    QString objectName;
};

std::array<Field, 4> fieldDescriptions()
{
    return {Field{AreaEditor::tr("Position &X"), QStringLiteral("xField")},
            Field{AreaEditor::tr("Position &Y"), QStringLiteral("yField")},
            Field{AreaEditor::tr("&Width"), QStringLiteral("widthField")},
            Field{AreaEditor::tr("&Height"), QStringLiteral("heightField")}};
}

/** Rounds half to even and keeps the sign of zero. */
QString wholeNumberText(double value)
{
    std::array<char, 320> text{}; // the largest double has 309 digits
    const int length = std::snprintf(text.data(), text.size(), "%.0f", value);
    return QString::fromLatin1(text.data(), length);
}

QLineEdit *makeField(const Field &description)
{
    auto *field = new QLineEdit;
    field->setObjectName(description.objectName);
    field->setPlaceholderText(QStringLiteral("0"));
    field->setFocusPolicy(Qt::ClickFocus);
    field->setTextMargins(5, 2, 5, 2);
    return field;
}

} // namespace

AreaEditor::AreaEditor()
{
    const auto descriptions = fieldDescriptions();
    for (std::size_t i = 0; i < fields_.size(); ++i) {
        captions_[i] = new QLabel(descriptions[i].label);
        fields_[i] = makeField(descriptions[i]);
        captions_[i]->setBuddy(fields_[i]);
        connect(fields_[i], &QLineEdit::textChanged, this, [this, i] {
            if (!isShowingFrame_) {
                Q_EMIT textEdited(i);
            }
        });
        connect(fields_[i], &QLineEdit::editingFinished, this, &AreaEditor::fieldFinished);
    }
    auto *rows = new QVBoxLayout(this);
    rows->setContentsMargins({});
    rows->setSpacing(12);
    rows->addLayout(makeRow(0));
    rows->addLayout(makeRow(2));
}

QHBoxLayout *AreaEditor::makeRow(std::size_t firstField)
{
    auto *row = new QHBoxLayout;
    row->setSpacing(12);
    for (std::size_t i = firstField; i < firstField + 2; ++i) {
        auto *cell = new QVBoxLayout;
        cell->setSpacing(6);
        cell->addWidget(captions_[i], 0, Qt::AlignLeft);
        cell->addWidget(fields_[i]);
        row->addLayout(cell, 1);
    }
    return row;
}

AreaEditor::Texts AreaEditor::texts() const
{
    return {fields_[0]->text(), fields_[1]->text(), fields_[2]->text(), fields_[3]->text()};
}

void AreaEditor::showFrame(const CaptureFrame &frame, std::optional<std::size_t> untouchedField)
{
    const QScopedValueRollback guard(isShowingFrame_, true);
    const std::array values{frame.x, frame.y, frame.width, frame.height};
    for (std::size_t i = 0; i < fields_.size(); ++i) {
        const QString text = wholeNumberText(values[i]);
        if (i != untouchedField
            && fields_[i]->text() != text) { // setting the same text would move the cursor
            fields_[i]->setText(text);
        }
    }
}

/**
 * Qt calls this on the parent of the field in which Tab was pressed. The fields are in no other tab
 * chain.
 */
bool AreaEditor::focusNextPrevChild(bool next)
{
    const auto *const current = std::ranges::find(fields_, window()->focusWidget());
    const auto *const end = next ? fields_.end() - 1 : fields_.begin();
    if (current == fields_.end() || current == end) {
        return QWidget::focusNextPrevChild(next);
    }
    QLineEdit *const neighbour = next ? current[1] : current[-1];
    neighbour->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

/** Handles keys that the fields ignore. */
void AreaEditor::keyPressEvent(QKeyEvent *event)
{
    const int key = event->key();
    if (key == Qt::Key_Escape || key == Qt::Key_Return || key == Qt::Key_Enter) {
        Q_EMIT editingEnded();
    } else {
        QWidget::keyPressEvent(event);
    }
}

void AreaEditor::setCaptionFont(const QFont &font)
{
    for (QLabel *caption : captions_) {
        caption->setFont(font);
    }
}

void AreaEditor::setColors(const Theme &theme)
{
    for (QLabel *caption : captions_) {
        QPalette palette;
        palette.setColor(QPalette::WindowText, theme.secondaryText);
        caption->setPalette(palette);
    }
    for (QLineEdit *field : fields_) {
        QPalette palette;
        setSelectionColors(palette, theme);
        palette.setColor(QPalette::PlaceholderText, theme.secondaryText);
        field->setPalette(palette);
    }
}

} // namespace glimmerpane
