#pragma once

#include "editor/EditorModel.h"
#include "editor/HoverInfo.h"

#include <QMargins>
#include <QPointF>
#include <QWidget>

namespace pintalux {

/// The editor's drawing surface: shows the document at a fitted scale and turns mouse and keyboard into edits
/// of the model.
///
/// View points are the widget's logical pixels; document points are pixels of the document's picture.
class CanvasView : public QWidget {
    Q_OBJECT

public:
    explicit CanvasView(EditorModel& model, QWidget* parent = nullptr);
    ~CanvasView() override;

    HoverInfo& hover() { return hoverInfo; }

    /// View points kept free around the document.
    QMargins insets() const { return freeMargins; }
    void setInsets(const QMargins& viewPoints);

    /// View points per document pixel.
    double viewScale() const;
    /// View point of the composition's top-left corner, whole.
    QPointF viewOrigin() const;
    QPointF documentPoint(QPointF viewPoint) const;
    QPointF viewPoint(QPointF documentPoint) const;
    /// Document point at the centre of the visible document area.
    QPointF visibleImageCenter() const;

    /// Finishes the text that is being typed, if any.
    void commitText();
    /// Inserts the clipboard's first picture; beeps when there is none.
    void paste();
    /// Puts the hovered colour's text on the clipboard and says so.
    void copyHoverColor();

private:
    EditorModel& model;
    HoverInfo hoverInfo;
    QMargins freeMargins{28, 16, 28, 92};
};

} // namespace pintalux
