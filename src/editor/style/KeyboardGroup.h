// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>

class QWidget;

namespace pintalux {

/// Lets the keyboard walk among the controls of one widget around the canvas.
///
/// Arrow keys go to the nearest control on that side, Escape goes back to the canvas. `walk` goes from group
/// to group and remembers where in each it was.
class KeyboardGroup : public QObject {
    Q_OBJECT

public:
    /// `place` orders the groups of a window; the canvas comes after the last one.
    KeyboardGroup(QWidget& controls, int place);

    /// Moves the focus to the next group that can be seen, or to the previous one.
    static void walk(QWidget& window, bool forward);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget& group() const;
    bool takeFocus();
    bool moveFocus(int key);

    int place;
    QPointer<QWidget> last;
};

} // namespace pintalux
