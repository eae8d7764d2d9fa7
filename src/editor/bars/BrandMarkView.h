// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>
#include <QWidget>

#include <functional>
#include <optional>

namespace pintalux {

/// The mark at the bar's left end. Dragging it takes the finished picture along.
class BrandMarkView : public QWidget {
    Q_OBJECT

public:
    BrandMarkView(std::function<void(QWidget&)> dragOut, QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    std::function<void(QWidget&)> dragOut;
    std::optional<QPoint> pressed;
};

} // namespace pintalux
