// SPDX-License-Identifier: MIT
#pragma once

#include "controls/ChromeButton.h"
#include "controls/theme/Theme.h"

namespace pintalux {

/// A symbol to click: in the bar, and as a toggle in the palette.
class BarButton : public ChromeButton {
    Q_OBJECT

public:
    /// The corners that are round, for the halves of a split button.
    enum class Part { whole, leading, trailing };
    /// Points.
    struct Metrics {
        QSize size{32, 28};
        double radius = Theme::controlRadius;
        double symbolSize = 18;
        Part part = Part::whole;
    };
    static constexpr int barHeight = 28;

    BarButton(const QString& symbol, const QString& help, QWidget* parent, const Metrics& metrics);
    BarButton(const QString& symbol, const QString& help, QWidget* parent);

    void setSymbol(const QString& symbol);
    const QString& symbolName() const { return symbol; }

    QSize sizeHint() const override { return metrics.size; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString symbol;
    Metrics metrics;
};

/// A thin line between the groups of the bar.
class BarDivider : public QWidget {
    Q_OBJECT

public:
    /// Free space at either side of the line; points.
    BarDivider(int before, int after, QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int before;
};

} // namespace pintalux
