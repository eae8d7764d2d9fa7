// SPDX-License-Identifier: MIT
#pragma once

#include "controls/ChromeButton.h"

#include <optional>

namespace pintalux {

/// A value of the bar with a small caption under it. Its width is that of the widest value it can have, so
/// that a changing number moves nothing.
class InfoText : public QWidget {
    Q_OBJECT

public:
    InfoText(const QString& caption, const QString& widestValue, QWidget* parent);

    const QString& value() const { return text; }
    void setValue(const QString& value);
    void setValue(const QString& value, const QString& caption);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString text;
    QString caption;
};

/// The colour under the pointer and its hexadecimal text; a click copies the text.
class HoverColorButton : public ChromeButton {
    Q_OBJECT

public:
    explicit HoverColorButton(QWidget* parent);

    void setColor(const std::optional<QColor>& color, const QString& hex);

    /// Space between the widget's edge and the chip; points.
    static constexpr int chipInset = 5;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::optional<QColor> color;
    QString hex;
};

} // namespace pintalux
