// SPDX-License-Identifier: MIT
#pragma once

#include "controls/theme/Fade.h"

#include <QAbstractButton>

#include <functional>

namespace pintalux {

class Menu;

/// A button with a text, 28 points high.
class PushButton : public QAbstractButton {
    Q_OBJECT

public:
    enum class Kind {
        bordered,
        solid,    ///< in the brand's colour: the one thing to do here
        gradient, ///< the main action of a window
    };

    PushButton(const QString& text, Kind kind, QWidget* parent = nullptr);
    ~PushButton() override;

    /// A symbol before the text; alone, where the text is empty.
    void setSymbol(const QString& name);
    /// A small picture of another kind in its place.
    using Picture = std::function<void(QPainter& painter, const QRectF& rect, const QColor& ink)>;
    void setPicture(Picture picture);
    /// The button opens this menu below itself, and says so with a chevron.
    void setMenu(std::unique_ptr<Menu> menu);
    Menu* menu() const { return popUp.get(); }
    /// Points; 28 unless told.
    void setButtonHeight(int height);
    /// Points; that of push buttons unless told.
    void setRadius(double radius);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    struct Look;

    Look look() const;
    void paintGround(const QRectF& shape, QPainter& painter) const;
    void paintBrandGround(const QRectF& shape, QPainter& painter) const;
    void openMenu();

    Kind kind;
    Picture picture;
    std::unique_ptr<Menu> popUp;
    int buttonHeight = 28;
    double radius;
    HoverFade hover;
    class FocusRing* ring;
};

} // namespace pintalux
