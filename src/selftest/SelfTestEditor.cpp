// SPDX-License-Identifier: MIT

// An editor on the screen, worked by the canvas's own scripted drags.

#include "app/AppDelegate.h"
#include "app/icon/AppIcon.h"
#include "editor/canvas/CanvasView.h"
#include "editor/window/EditorWindowController.h"
#include "selftest/Scenes.h"
#include "selftest/SelfTest.h"

#include <QPointer>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace pintalux::SelfTest {

namespace {

const Annotation& lastMark(EditorWindowController& editor) { return editor.model().doc().annotations.last(); }

QString pointerText(const Annotation& mark) { return mark.pointer ? text(*mark.pointer) : u"ninguno"_s; }

} // namespace

void Run::openEditor()
{
    note(u"Abriendo editor…"_s);
    const auto before = delegate.editors().size();
    delegate.openEditor({sample, sampleScale, std::nullopt});
    if (delegate.editors().size() == before)
        return note(u"FALLO: editor"_s);
    note(u"Editor abierto"_s);
    auto& editor = *delegate.editors().back();
    checkArrow(editor);
    checkStep(editor);
    checkCallout(editor);
    checkInsertedImage(editor);
    checkEraser(editor);
    noteArrowOptions(editor);
}

void Run::checkArrow(EditorWindowController& editor)
{
    auto& model = editor.model();
    auto& canvas = editor.canvas();
    model.setTool(Tool::arrow);
    model.setArrowStyle(ArrowStyle::filled);
    canvas.debugDrag({1240, 520}, {860, 600});
    if (model.doc().annotations.isEmpty())
        return note(u"FALLO: flecha con nodos; "_s + canvas.debugState());
    const auto created = lastMark(editor).kind;
    canvas.debugDrag(lastMark(editor).curveMidpoint(), {1060, 500});
    const auto middle = lastMark(editor).curveMidpoint();
    canvas.debugDrag(lastMark(editor).end, {1120, 660});
    note(u"Flecha con nodos: creada=%1 (medio %2) punta=%3 anotaciones=%4"_s
             .arg(rawValue(created), text(middle), text(lastMark(editor).end))
             .arg(model.doc().annotations.size()));
    model.undo();
    note(u"Deshacer reorientación → punta "_s + text(lastMark(editor).end));
}

void Run::checkStep(EditorWindowController& editor)
{
    auto& model = editor.model();
    auto& canvas = editor.canvas();
    model.setTool(Tool::step);
    canvas.debugDrag({560, 480}, {700, 600});
    const auto mark = lastMark(editor);
    note(u"Paso con puntero: tipo=%1 puntero=%2 seleccionado=%3"_s.arg(
        rawValue(mark.kind), pointerText(mark), text(model.selectedID() == mark.id)));
    canvas.debugDrag(mark.pointerNode(), {430, 620});
    note(u"Puntero reorientado → "_s + pointerText(lastMark(editor)));
}

void Run::checkCallout(EditorWindowController& editor)
{
    auto& model = editor.model();
    auto& canvas = editor.canvas();
    model.setTool(Tool::text);
    model.setCalloutText(true);
    canvas.debugType({780, 300}, u"Una llamada que se ensancha"_s);
    canvas.commitText();
    auto mark = lastMark(editor);
    if (mark.kind != AnnotationKind::text)
        return note(u"FALLO: llamada de texto; "_s + canvas.debugState());
    model.setSelectedID(mark.id);
    const auto bubble = mark.textBubble();
    const auto right = QPointF(bubble.right(), bubble.center().y());
    canvas.debugDrag(right, right - QPointF(180, 0));
    mark = lastMark(editor);
    canvas.debugDrag(mark.pointerNode(), {700, 420});
    note(u"Llamada de texto: ancho=%1 (antes %2) puntero=%3"_s
             .arg(qRound(lastMark(editor).textBubble().width()))
             .arg(qRound(bubble.width()))
             .arg(pointerText(lastMark(editor))));
}

void Run::checkInsertedImage(EditorWindowController& editor)
{
    auto& model = editor.model();
    constexpr int iconPoints = 256;
    model.insertImage(AppIcon::render(iconPoints), {300, 710}, 1);
    note(u"Imagen insertada: %1 seleccionada=%2 herramienta=%3"_s.arg(rawValue(lastMark(editor).kind),
        text(model.selectedID() == lastMark(editor).id), rawValue(model.tool())));
    model.setTool(Tool::text);
    model.setCalloutText(false);
    note(u"Texto escrito: "_s + editor.canvas().debugType({580, 690}, u"ESTA ES UNA PRUEBA"_s));
    editor.canvas().commitText();
}

void Run::checkEraser(EditorWindowController& editor)
{
    auto& model = editor.model();
    const auto count = [&model] { return model.doc().annotations.size(); };
    const auto before = count();
    model.setTool(Tool::eraser);
    const auto over = lastMark(editor).bounds();
    editor.canvas().debugDrag({over.left() - 60, over.center().y()}, over.center());
    const auto erased = count();
    model.undo();
    note(u"Borrador: %1 → %2 anotaciones; tras deshacer → %3"_s.arg(before).arg(erased).arg(count()));
}

void Run::noteArrowOptions(EditorWindowController& editor)
{
    auto& model = editor.model();
    model.setTool(Tool::arrow);
    model.setSelectedID(model.doc().annotations.first().id);
    note(u"Panel de flecha visible: %1; seleccionada=%2"_s.arg(
        text(model.showArrowOptions()), text(model.selected() != nullptr)));
    constexpr int laterMilliseconds = 300;
    QTimer::singleShot(laterMilliseconds, this, [later = QPointer(&model)] {
        if (!later)
            return;
        // With the mark chosen, so that the picture of the window shows handles and arrow options.
        const auto chosen = later->selectedID();
        later->setTool(Tool::select);
        later->setTool(Tool::arrow);
        later->setSelectedID(chosen);
    });
}

void Run::showThumbnail() { delegate.showThumbnail({sample, sampleScale, u"Prueba"_s}, std::nullopt); }

} // namespace pintalux::SelfTest
