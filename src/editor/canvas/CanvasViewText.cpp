// SPDX-License-Identifier: MIT
#include "editor/canvas/CanvasTextField.h"
#include "editor/canvas/CanvasView.h"
#include "editor/state/DocumentEditing.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace pintalux {

void CanvasView::beginNewText(QPointF at)
{
    editingID.reset();
    model.setSelectedID({});
    showTextField({.kind = AnnotationKind::text,
        .start = at,
        .end = at,
        .color = model.color(),
        .lineWidth = model.lineWidth(),
        .filled = model.filled() || model.calloutText(),
        .fontSize = model.fontSize(),
        .handwritten = model.handwritten()});
}

void CanvasView::editText(const Annotation& mark)
{
    const auto edited = mark; // unselecting may be answered by changing the document
    editingID = edited.id;
    model.setSelectedID({});
    showTextField(edited);
}

void CanvasView::showTextField(const Annotation& mark)
{
    closeTextField();
    editingTemplate = mark;
    textField = new CanvasTextField(mark, this);
    connect(textField, &CanvasTextField::textChanged, this, &CanvasView::refresh);
    connect(textField, &CanvasTextField::committed, this, &CanvasView::finishText);
    connect(textField, &CanvasTextField::cancelled, this, &CanvasView::cancelText);
    layOutTextField();
    textField->show();
    textField->setFocus();
}

std::optional<Annotation> CanvasView::textPreview() const
{
    if (!textField || !editingTemplate)
        return std::nullopt;
    auto preview = *editingTemplate;
    preview.text = textField->text();
    // Without a letter a bubble would not show, nor its placeholder: white on whatever is beneath.
    if (preview.text.isEmpty() && preview.filled)
        preview.text = CanvasTextField::placeholder();
    return preview;
}

void CanvasView::layOutTextField()
{
    const auto preview = textPreview();
    textField->place(viewPoint(preview->start), viewScale(), preview->textSize());
}

/// Takes the field away, if there is one; the focus returns to the canvas.
void CanvasView::closeTextField()
{
    auto* closing = std::exchange(textField, nullptr);
    if (!closing)
        return;
    closing->disconnect(this);
    const bool hadFocus = closing->hasFocus();
    closing->hide();
    closing->deleteLater(); // one of its own events may be under way
    if (hadFocus || !window()->focusWidget())
        setFocus();
}

void CanvasView::commitText()
{
    incoming.finish();
    release();
    finishText();
}

void CanvasView::finishText()
{
    if (!textField)
        return;
    textField->finishComposing();
    const auto text = textField->text().trimmed();
    const bool isEdited = textField->isEdited();
    closeTextField();
    const auto edited = std::exchange(editingID, std::nullopt);
    auto mark = *std::exchange(editingTemplate, std::nullopt);

    if (const auto* former = edited ? model.doc().annotation(*edited) : nullptr) {
        const auto change = [&](Document& document) {
            if (text.isEmpty())
                DocumentEditing::removeMark(document, *edited);
            else
                DocumentEditing::changeMark(document, *edited, [&](Annotation& each) { each.text = text; });
        };
        if (isEdited && text != former->text)
            model.commit(change);
    } else if (!text.isEmpty()) {
        mark.text = text;
        if (model.calloutText() && mark.filled)
            mark.pointer = mark.suggestedPointer();
        model.add(mark);
        if (mark.filled)
            model.setSelectedID(mark.id);
    }
    refresh();
}

void CanvasView::cancelText()
{
    closeTextField();
    editingID.reset();
    editingTemplate.reset();
    refresh();
}

QString CanvasView::debugType(QPointF at, const QString& text)
{
    lastTool = model.tool();
    beginNewText(at);
    textField->insert(text);
    const auto size = textPreview()->textSize();
    const auto frame = textField->geometry();
    return u"campo=%1×%2 texto=%3×%4 cabe=%5"_s.arg(frame.width())
        .arg(frame.height())
        .arg(size.width())
        .arg(size.height())
        .arg(textField->fits() ? u"true"_s : u"false"_s);
}

} // namespace pintalux
