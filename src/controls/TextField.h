// SPDX-License-Identifier: MIT
#pragma once

#include <QLineEdit>

namespace pintalux {

/// A field for one line of text, 28 points high.
class TextField : public QLineEdit {
    Q_OBJECT

public:
    explicit TextField(QWidget* parent = nullptr);

    /// Shows that the text is not understood, until it is edited.
    void setWrong(bool wrong);
    bool isWrong() const { return wrong; }

    QSize sizeHint() const override { return {120, 28}; }
    QSize minimumSizeHint() const override { return {40, 28}; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void applyTheme();

    bool wrong = false;
};

} // namespace pintalux
