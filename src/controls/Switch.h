// SPDX-License-Identifier: MIT
#pragma once

#include "controls/theme/Fade.h"

#include <QAbstractButton>

namespace pintalux {

/// A switch, 34 × 20 points, that is on or off at once.
class Switch : public QAbstractButton {
    Q_OBJECT

public:
    /// `name` is what assistive technology calls it.
    explicit Switch(const QString& name, QWidget* parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    bool hitButton(const QPoint& position) const override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void paint(QPainter& painter) const;

    Fade knob;
    Fade color;
    HoverFade hover;
};

} // namespace pintalux
