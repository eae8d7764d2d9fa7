// SPDX-License-Identifier: MIT
#pragma once

#include "controls/ChromeButton.h"

namespace pintalux {

/// A colour to choose.
class SwatchButton : public ChromeButton {
    Q_OBJECT

public:
    /// Points.
    struct Metrics {
        double disc = 18;
        double hoveredDisc = 20;
        double ringGap = 2;
    };

    SwatchButton(const QColor& color, const QString& name, QWidget* parent);

    const QColor& color() const { return offered; }
    void setMetrics(const Metrics& metrics);

protected:
    void paintEvent(QPaintEvent* event) override;
    QRectF focusShape() const override;

private:
    QColor offered;
    Metrics metrics;
};

/// Opens the chooser of all colours; a ring of hues around the current one.
class ColorChooserButton : public ChromeButton {
    Q_OBJECT

public:
    ColorChooserButton(const QString& help, QWidget* parent);

    void setColor(const QColor& color);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QColor current;
};

/// Shows the current colour and opens the chooser beneath.
class DropColorButton : public ChromeButton {
    Q_OBJECT

public:
    DropColorButton(const QString& help, QWidget* parent);

    void setColor(const QColor& color);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QColor current;
};

/// A stroke width to choose, drawn as a bar of that kind.
class WidthButton : public ChromeButton {
    Q_OBJECT

public:
    /// `barHeight` in points.
    WidthButton(double barHeight, const QString& name, QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    double barHeight;
};

} // namespace pintalux
