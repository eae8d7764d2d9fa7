// SPDX-License-Identifier: MIT
#include "editor/canvas/CanvasPasteboard.h"
#include "editor/canvas/CanvasView.h"
#include "model/Palette.h"
#include "platform/desktop/LetterKey.h"

#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QKeyEvent>
#include <QMimeData>

#include <utility>

namespace pintalux {

// ---- Keys

bool CanvasView::event(QEvent* event)
{
    if (event->type() == QEvent::KeyPress) {
        // Before the toolkit moves the focus with it.
        const auto key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Tab || key == Qt::Key_Backtab) {
            keyPressEvent(static_cast<QKeyEvent*>(event));
            return true;
        }
    }
    return QWidget::event(event);
}

void CanvasView::keyPressEvent(QKeyEvent* event)
{
    if (gesture && event->key() == Qt::Key_Shift)
        return dragTo(pointer.at, true);
    if (handleEditingKey(*event))
        return;
    const bool isCommand = event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
    if (isCommand || !handleCharacterKey(*event))
        event->ignore();
}

void CanvasView::keyReleaseEvent(QKeyEvent* event)
{
    if (gesture && event->key() == Qt::Key_Shift)
        dragTo(pointer.at, false);
    else
        event->ignore();
}

/// Keys that mean the same on every layout.
bool CanvasView::handleEditingKey(const QKeyEvent& event)
{
    switch (event.key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Down:
    case Qt::Key_Up:
        return nudge(event);
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (model.tool() == Tool::crop) {
            release();
            model.applyCrop();
        }
        return true;
    case Qt::Key_Backspace:
    case Qt::Key_Delete:
        release();
        model.deleteSelected();
        return true;
    case Qt::Key_Escape:
        escape();
        return true;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        model.setToolbarHidden(!model.toolbarHidden());
        return true;
    default:
        return false;
    }
}

bool CanvasView::nudge(const QKeyEvent& event)
{
    if (model.tool() != Tool::select || !model.selected())
        return false;
    release();
    const double step = (event.modifiers().testFlag(Qt::ShiftModifier) ? 10 : 1) * model.doc().pixelScale;
    QPointF by;
    switch (event.key()) {
    case Qt::Key_Left:
        by = {-step, 0};
        break;
    case Qt::Key_Right:
        by = {step, 0};
        break;
    case Qt::Key_Down:
        by = {0, step};
        break;
    default:
        by = {0, -step};
        break;
    }
    restyleSelected([by](Annotation& moved) { moved.offset(by); });
    return true;
}

void CanvasView::escape()
{
    if (const auto ended = std::exchange(gesture, nullptr)) {
        ended->cancel();
        refresh();
    } else if (model.cropRect())
        model.setCropRect({});
    else if (model.selectedID())
        model.setSelectedID({});
    else
        window()->close();
}

bool CanvasView::handleCharacterKey(const QKeyEvent& event)
{
    if (event.modifiers().testFlag(Qt::ShiftModifier) && isLetterKey(event, 'C')) {
        copyHoverColor();
        return true;
    }
    for (const auto& row : toolTable) {
        if (isLetterKey(event, char(QChar(row.shortcut).toUpper().toLatin1()))) {
            release();
            model.setTool(row.value);
            return true;
        }
    }
    if (chooseColor(event))
        return true;
    return isLetterKey(event, 'F') && toggleFill();
}

bool CanvasView::chooseColor(const QKeyEvent& event)
{
    const auto& swatches = Palette::annotation();
    const auto number = event.key() - Qt::Key_0;
    if (number < 1 || number > swatches.size())
        return false;
    release();
    const auto color = swatches[number - 1].color;
    model.setColor(color);
    restyleSelected([&](Annotation& recolored) { recolored.color = color; });
    return true;
}

bool CanvasView::toggleFill()
{
    if (!supportsFill(model.tool()) && model.tool() != Tool::select)
        return false;
    release();
    model.setFilled(!model.shownStyle().filled);
    restyleSelected([filled = model.filled()](Annotation& restyled) { restyled.filled = filled; });
    return true;
}

// ---- Pictures from elsewhere

void CanvasView::insertFrom(const QMimeData& data, QPointF place)
{
    const auto decode
        = [offer = CanvasPasteboard::offer(data)] { return CanvasPasteboard::firstImage(offer); };
    incoming.expect(decode, [this, place](const QImage& image) {
        if (image.isNull())
            QApplication::beep();
        else
            model.insertImage(image, place, 1);
    });
}

void CanvasView::paste()
{
    if (const auto* copied = QApplication::clipboard()->mimeData())
        insertFrom(*copied, visibleImageCenter());
    else
        QApplication::beep();
}

void CanvasView::dragEnterEvent(QDragEnterEvent* event)
{
    if (CanvasPasteboard::offersImage(event->mimeData())) {
        event->setDropAction(Qt::CopyAction);
        event->accept();
    }
}

void CanvasView::dropEvent(QDropEvent* event)
{
    if (!CanvasPasteboard::offersImage(event->mimeData()))
        return event->ignore();
    insertFrom(*event->mimeData(), documentPoint(event->position()));
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

} // namespace pintalux
