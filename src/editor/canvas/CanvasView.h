// SPDX-License-Identifier: MIT
#pragma once

#include "editor/canvas/CanvasMapping.h"
#include "editor/canvas/CanvasPicture.h"
#include "editor/canvas/IncomingPictures.h"
#include "editor/state/CanvasGesture.h"
#include "editor/state/EditorModel.h"
#include "editor/state/HoverInfo.h"

#include <QMargins>
#include <QPointF>
#include <QWidget>

#include <memory>
#include <optional>

class QMimeData;

namespace pintalux {

class CanvasTextField;

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
    double viewScale() const { return mapping().scale; }
    QPointF documentPoint(QPointF viewPoint) const { return mapping().toDocument(viewPoint); }
    QPointF viewPoint(QPointF documentPoint) const { return mapping().toView(documentPoint); }
    /// Document point at the centre of the visible document area.
    QPointF visibleImageCenter() const;

    /// Finishes the text that is being typed, if any, a drag that is under way and pictures on their way.
    void commitText();
    /// Inserts the clipboard's first picture, in a moment; beeps when there is none.
    void paste();
    /// Puts the hovered colour's text on the clipboard and says so.
    void copyHoverColor();

    /// "draft=… nodeDrag=… body=… editing=…", for the self-test.
    QString debugState() const;
    /// Begins a text at a document point and types into it. "campo=… texto=… cabe=…": the field's frame in
    /// view points, the text's size in document pixels, whether all of it shows.
    QString debugType(QPointF at, const QString& text);
    /// Presses, drags and releases between two document points.
    void debugDrag(QPointF from, QPointF to);

Q_SIGNALS:
    /// A mark was asked for its menu, by a right click or the menu key, and is selected now; a point of the
    /// screen (global logical pixels).
    void markMenuRequested(QPoint screenPoint);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    // What is shown (CanvasView.cpp)
    CanvasMapping mapping() const;
    CanvasScene scene() const;
    int zoom() const;
    Renderer::Overlay overlay() const;
    void modelChanged();
    void refresh();
    void showCursor();
    std::optional<HoverInfo::Drawn> drawn() const;
    /// One undo step, and none when the change changes nothing.
    void restyleSelected(const EditorModel::AnnotationChange& change);
    void hoverAt(QPointF viewPoint);

    // The pointer (CanvasViewMouse.cpp); all in document points
    enum class Clicks { one, two };
    void press(QPointF at, Clicks clicks);
    void dragTo(QPointF at, bool shift);
    void release();
    bool pressNode(QPointF at, Clicks clicks);
    void pressSelect(QPointF at, Clicks clicks);
    void pressCurvable(QPointF at, AnnotationKind kind);
    void pressShape(QPointF at, AnnotationKind kind);
    void pressStep(QPointF at);
    void pressText(QPointF at, Clicks clicks);
    void pressCrop(QPointF at, Clicks clicks);
    const Annotation* topAnnotation(QPointF at) const;
    void selectVisibly(const Annotation& mark);
    void moveBody(const QUuid& id, QPointF at);

    // Typing (CanvasViewText.cpp)
    void beginNewText(QPointF at);
    void editText(const Annotation& mark);
    void showTextField(const Annotation& mark);
    std::optional<Annotation> textPreview() const;
    void layOutTextField();
    void closeTextField();
    void finishText();
    void cancelText();

    // Keys (CanvasViewKeys.cpp)
    bool handleEditingKey(const QKeyEvent& event);
    bool handleCharacterKey(const QKeyEvent& event);
    bool nudge(const QKeyEvent& event);
    void escape();
    bool chooseColor(const QKeyEvent& event);
    bool toggleFill();
    void insertFrom(const QMimeData& data, QPointF place);

    EditorModel& model;
    HoverInfo hoverInfo;
    QMargins freeMargins{28, 16, 28, 92};
    CanvasPicture picture;
    Tool lastTool;
    bool refreshIsDue = false;

    std::unique_ptr<CanvasGesture> gesture;
    CanvasGesture::Pointer pointer;
    QPointF pressedAt;
    std::optional<QRectF> clickedCrop; ///< as the latest press of the crop tool found it

    CanvasTextField* textField = nullptr; ///< a child
    std::optional<QUuid> editingID;       ///< none for a new text
    std::optional<Annotation> editingTemplate;

    IncomingPictures incoming;
};

} // namespace pintalux
