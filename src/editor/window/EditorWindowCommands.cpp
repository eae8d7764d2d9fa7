// SPDX-License-Identifier: MIT

// What a person can do with an editor's picture.

#include "app/floating/Pin.h"
#include "app/messages/HUD.h"
#include "capture/text/OCR.h"
#include "editor/canvas/CanvasView.h"
#include "editor/window/EditorWindowController.h"
#include "editor/window/EditorWindowDrag.h"
#include "editor/window/OpenPanel.h"
#include "editor/window/SavePanel.h"
#include "platform/base/Error.h"
#include "platform/base/Worker.h"
#include "platform/image/ImageFile.h"
#include "render/export/Clipboard.h"
#include "render/export/Exporter.h"

#include <QApplication>
#include <QDrag>
#include <QFileInfo>
#include <QPointer>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

/// Between pictures inserted together, points.
constexpr double insertStep = 24;

/// The pictures of those files that hold one, in order.
QList<ImageFile> readPictures(const QStringList& paths)
{
    QList<ImageFile> pictures;
    for (const auto& path : paths) {
        try {
            pictures.append(readImageFile(path));
        } catch (const Error&) {
            continue; // no picture
        }
    }
    return pictures;
}

} // namespace

QImage EditorWindowController::finishedImage()
{
    commitText();
    return editorModel.renderFinal();
}

bool EditorWindowController::copyFinished()
{
    const auto image = finishedImage();
    Clipboard::copy(image, editorModel.doc().pixelScale);
    return !image.isNull();
}

void EditorWindowController::commitText() { canvas().commitText(); }

void EditorWindowController::undo()
{
    commitText();
    editorModel.undo();
}

void EditorWindowController::redo() { editorModel.redo(); }

void EditorWindowController::clear() { editorModel.clearAnnotations(); }

void EditorWindowController::copy()
{
    if (copyFinished())
        HUD::show(u"Copiado al portapapeles"_s, u"doc.on.clipboard"_s);
}

void EditorWindowController::paste() { canvas().paste(); }

void EditorWindowController::saveAs()
{
    if (const auto image = finishedImage(); !image.isNull())
        Exporter::savePanel(image, editorModel.doc().pixelScale, settings.saveFolder(),
            editorModel.suggestedName(), editorWindow.get());
}

void EditorWindowController::quickSave()
{
    const auto image = finishedImage();
    if (image.isNull())
        return;
    const auto save
        = [image, scale = editorModel.doc().pixelScale, folder = settings.saveFolder(),
              name = editorModel.suggestedName()] { return Exporter::quickSave(image, scale, folder, name); };
    const auto tell = [](const QFuture<QString>& path) {
        try {
            HUD::show(u"Guardado en "_s + QFileInfo(QFileInfo(path.result()).path()).fileName(),
                u"checkmark.circle.fill"_s);
        } catch (const Error& error) {
            HUD::show(u"No se pudo guardar: "_s + error.localizedDescription, u"xmark.octagon"_s);
        }
    };
    // Told also when this window has gone by then.
    whenFinished(runOn(Exporter::savingThread(), save), QCoreApplication::instance(), tell);
}

void EditorWindowController::insertImage()
{
    const OpenPanel panel{
        .message = u"Elige una o varias imágenes para agregarlas sobre la captura"_s, .prompt = u"Agregar"_s};
    showOpenPanel(panel, editorWindow.get(), [guard = QPointer(this)](const QStringList& paths) {
        if (guard)
            guard->insertFiles(paths);
    });
}

void EditorWindowController::insertFiles(const QStringList& paths)
{
    const auto reading = runOn(sideWorker(), [paths] { return readPictures(paths); });
    whenFinished(reading, this, [this](QFuture<QList<ImageFile>> read) {
        try {
            auto center = canvas().visibleImageCenter();
            for (const auto& file : read.takeResult()) {
                editorModel.insertImage(file.image, center, file.pixelScale());
                center += QPointF(insertStep, insertStep) * editorModel.doc().pixelScale;
            }
        } catch (const Error& error) {
            HUD::show(error.localizedDescription, u"exclamationmark.triangle"_s);
        }
        canvas().setFocus();
    });
}

void EditorWindowController::duplicate()
{
    commitText();
    editorModel.duplicateSelected();
}

void EditorWindowController::bringForward()
{
    commitText();
    editorModel.moveSelected(DocumentEditing::Order::forward);
}

void EditorWindowController::sendBackward()
{
    commitText();
    editorModel.moveSelected(DocumentEditing::Order::backward);
}

void EditorWindowController::deleteMark()
{
    commitText();
    editorModel.deleteSelected();
}

void EditorWindowController::pin()
{
    if (const auto image = finishedImage(); !image.isNull())
        PinnedImage::show(image, editorModel.doc().pixelScale, editorWindow.get());
}

void EditorWindowController::extractText()
{
    const auto readable = Exporter::redacted(editorModel.doc(), editorModel.cache());
    OCR::recognize(readable, [](const std::optional<QString>& text) {
        if (!text || text->isEmpty())
            return HUD::show(u"No se encontró texto"_s, u"text.magnifyingglass"_s);
        Clipboard::copy(*text);
        HUD::show(u"Texto copiado al portapapeles"_s, u"text.viewfinder"_s);
    });
}

void EditorWindowController::copyHoverColor() { canvas().copyHoverColor(); }

void EditorWindowController::hide()
{
    for (auto* window : QApplication::topLevelWidgets())
        if (window->isVisible() && window->windowType() == Qt::Window)
            window->showMinimized();
}

void EditorWindowController::minimize() { editorWindow->showMinimized(); }

void EditorWindowController::close() { editorWindow->close(); }

void EditorWindowController::dragOut(QWidget& source)
{
    const auto image = finishedImage();
    if (image.isNull())
        return;
    auto* picture = new DraggedPicture(image, editorModel.doc().pixelScale, editorModel.suggestedName());
    auto* drag = new QDrag(&source); // which the toolkit deletes, with the picture
    drag->setMimeData(picture);
    const auto pixmap = picture->thumbnail(source.devicePixelRatioF());
    drag->setPixmap(pixmap);
    drag->setHotSpot(QRectF({}, pixmap.deviceIndependentSize()).center().toPoint());
    // Let go too early, it must not land on the picture that it is.
    canvas().setAcceptDrops(false);
    const QPointer guard(this);
    drag->exec(Qt::CopyAction);
    if (guard)
        canvas().setAcceptDrops(true);
}

} // namespace pintalux
