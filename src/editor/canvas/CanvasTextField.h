// SPDX-License-Identifier: MIT
#pragma once

#include "model/Annotation.h"

#include <QBasicTimer>
#include <QGraphicsScene>
#include <QGraphicsView>

namespace pintalux {

/// The field in which a text mark is typed, on the very spot where it will stand.
///
/// It edits the same layout that the renderer draws, painted through the same scale, so that caret and line
/// breaks are where the finished text has them. The caret has the text's colour. Plain text only.
class CanvasTextField : public QGraphicsView {
    Q_OBJECT

public:
    /// Holds the text of `mark` and takes its look from it.
    CanvasTextField(const Annotation& mark, QWidget* parent);
    ~CanvasTextField() override;

    QString text() const;
    /// Whether the text has been touched since the field was opened.
    bool isEdited() const;
    void insert(const QString& text);
    /// Ends a composition that the input method has open, keeping what it shows.
    void finishComposing();

    /// Puts the text's top-left corner at a view point of the parent, `scale` view points a document pixel.
    /// `textSize` is what the finished text takes, in document pixels.
    void place(QPointF topLeft, double scale, QSizeF textSize);
    /// Whether all of the text shows.
    bool fits() const;

    static QString placeholder() { return QStringLiteral("Escribe…"); }

Q_SIGNALS:
    void textChanged();
    /// Return, or the focus goes elsewhere.
    void committed();
    /// Escape.
    void cancelled();

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void drawForeground(QPainter* painter, const QRectF& rect) override;
    void timerEvent(QTimerEvent* event) override;

private:
    class Item;

    bool isEmpty() const;
    void cut();
    void copy();
    void paste();
    void selectAll();
    void pastePlainText(const QString& text);
    void moveCaretTo(QPoint viewportPoint);
    void drawPlaceholder(QPainter& painter) const;
    void drawCaret(QPainter& painter);

    QGraphicsScene page;
    Item* item; ///< owned by `page`
    TextAttributes attributes;
    QColor caretRim;   ///< where nothing else sets the caret off from the picture
    QPointF caretSeen; ///< where it was painted last, in the item
    bool caretIsOn = true;
    QBasicTimer blinking;
};

} // namespace pintalux
