// SPDX-License-Identifier: MIT
#pragma once

#include "editor/state/EditorModel.h"

#include <QWidget>

#include <functional>

namespace pintalux {

class ChromeButton;
class SwatchButton;
class TextField;

/// All colours: the palette, greys, a hexadecimal text, and the way to the system's own colour panel. The
/// contents of a popover.
class ColorChooser : public QWidget {
    Q_OBJECT

public:
    /// `dismiss` closes what shows it.
    ColorChooser(EditorModel& model, std::function<void()> dismiss, QWidget* parent = nullptr);

    /// Shows it in a popover at `button`, which looks open meanwhile, and beyond the edge of `clearOf` if
    /// there is one.
    static void open(EditorModel& model, ChromeButton& button, const QWidget* clearOf);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void addRow(int row, const QList<std::pair<QColor, QString>>& colors);
    void addTextRow();
    void choose(const QColor& color);
    void submit();
    void refresh();

    EditorModel& model;
    std::function<void()> dismiss;
    QList<SwatchButton*> swatches;
    TextField* hex = nullptr;
};

} // namespace pintalux
