// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QList>
#include <QWidget>

class QAbstractButton;

namespace pintalux {

class PushButton;

/// The palette's colours as swatches, and a button for any other one.
class ColorPicker : public QWidget {
    Q_OBJECT

public:
    explicit ColorPicker(QWidget* parent = nullptr);

    /// Shows the choice; announces nothing.
    void setColor(const QColor& color);

Q_SIGNALS:
    void chosen(const QColor& color);
    /// Between them the dialog for any other colour is open, and tells each colour on the way.
    void dialogOpened();
    void dialogClosed();

private:
    void askForColor();

    QList<QAbstractButton*> swatches; ///< in the palette's order
    PushButton* other;
    QColor current;
};

} // namespace pintalux
