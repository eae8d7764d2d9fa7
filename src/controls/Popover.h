// SPDX-License-Identifier: MIT
#pragma once

#include "controls/Sheet.h"
#include "controls/theme/Fade.h"

#include <QPointer>
#include <QWidget>

namespace pintalux {

/// A sheet that opens beside a button, until Escape, a click outside or another one on the button. Keys that
/// mean nothing in it reach the window that it was opened from, unless a text is being typed.
class Popover : public QWidget {
    Q_OBJECT

public:
    /// `content` becomes a child and is shown as large as its size hint.
    explicit Popover(QWidget* content, QWidget* parent = nullptr);

    /// The sheet opens beyond the upper or lower edge of this widget, which has the button on it, instead of
    /// the button's.
    void setClearOf(const QWidget* surroundings) { clearOf = surroundings; }

    /// Opens centred under `button`, above it where there is no room. The button stays pressed while it is
    /// open; it closes when the button's window goes. When it was opened by keyboard, the first control of
    /// the content gets the focus.
    void popUp(QWidget* button);

    /// Where a sheet of that size goes, in the same space as the rectangles: `visible` is the part of the
    /// screen that it may not leave.
    static QRect place(QSize sheet, const QRect& button, const QRect& visible);

Q_SIGNALS:
    void closed();

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void reposition();
    void arrive();
    void leaveFadingPicture();

    QWidget* content;
    Sheet sheet;
    QPointer<QWidget> opener;
    QPointer<const QWidget> clearOf;
    QPoint home;         ///< of the window once it has slid in
    bool isBelow = true; ///< the button
    Glide arrival;
};

} // namespace pintalux
