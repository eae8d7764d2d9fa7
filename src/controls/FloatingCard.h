// SPDX-License-Identifier: MIT
#pragma once

#include "controls/theme/Fade.h"

#include <QPointer>
#include <QWidget>

class QGraphicsOpacityEffect;

namespace pintalux {

/// A rounded sheet that floats over other widgets of its window: the tool palette, the arrow options.
///
/// The widget is exactly the sheet; its shadow is a sibling beneath it that lets the mouse through, so that
/// what lies around the sheet stays usable.
class FloatingCard : public QWidget {
    Q_OBJECT

public:
    FloatingCard(double radius, QWidget* parent);
    ~FloatingCard() override;

    /// Shows or hides the sheet with a fade. While it fades out it no longer takes clicks.
    void setShown(bool shown);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    class ShadowWidget;

    void placeShadow();
    void setOpacity(double opacity);

    double radius;
    QPointer<ShadowWidget> shadow;
    Glide fade;
    QGraphicsOpacityEffect* effect = nullptr; ///< only while fading; the widget owns it
};

} // namespace pintalux
