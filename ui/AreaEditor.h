// SPDX-License-Identifier: MIT
#pragma once

#include "services/CaptureFrame.h"

#include <QString>
#include <QWidget>

#include <array>
#include <cstddef>
#include <optional>

class QHBoxLayout;
class QLabel;
class QLineEdit;

namespace glimmerpane
{

struct Theme;

/**
 * The four numbers of the capture area as text fields. Never disabled. Reached by clicking or by
 * the mnemonics of their captions; Tab then moves between them.
 */
class AreaEditor : public QWidget
{
    Q_OBJECT

public:
    using Texts = std::array<QString, 4>; ///< x, y, width, height

    AreaEditor();

    Texts texts() const;

    /** Shows the frame as whole numbers, except in `untouchedField`. Does not emit textEdited(). */
    void showFrame(const CaptureFrame &frame, std::optional<std::size_t> untouchedField = {});

    void setCaptionFont(const QFont &font);
    void setColors(const Theme &theme);

Q_SIGNALS:
    /** The user changed the text of a field, for instance by one keystroke. */
    void textEdited(std::size_t field);
    /** A field was left, or Return was pressed in it. */
    void fieldFinished();
    /** Escape or Return was pressed in a field. */
    void editingEnded();

protected:
    bool focusNextPrevChild(bool next) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    QHBoxLayout *makeRow(std::size_t firstField);

    std::array<QLabel *, 4> captions_;
    std::array<QLineEdit *, 4> fields_;
    bool isShowingFrame_ = false;
};

} // namespace glimmerpane
