#pragma once

#include <QPointer>
#include <QWidget>

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

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    double radius;
};

} // namespace pintalux
