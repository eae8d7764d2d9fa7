// SPDX-License-Identifier: MIT
#include "editor/state/EditorModel.h"

#include "model/Palette.h"
#include "platform/graphics/Geometry.h"
#include "render/export/Exporter.h"

#include <initializer_list>
#include <utility>

namespace pintalux {

namespace {

/// Largest part of the document's width and height that an inserted picture takes.
constexpr double insertedPart = 0.45;
/// Least width and height of a cropped document, in pixels.
constexpr double leastCrop = 2;

bool keepsSelection(Tool tool)
{
    constexpr std::array keeping{Tool::select, Tool::arrow, Tool::line, Tool::step, Tool::text};
    return std::find(keeping.begin(), keeping.end(), tool) != keeping.end();
}

/// The smallest rectangle of whole pixels around `rect`.
QRect outwardRounded(const QRectF& rect)
{
    const QPoint least(int(std::floor(rect.left())), int(std::floor(rect.top())));
    const QPoint beyond(int(std::ceil(rect.right())), int(std::ceil(rect.bottom())));
    return {least, QSize(beyond.x() - least.x(), beyond.y() - least.y())};
}

} // namespace

EditorModel::EditorModel(const CaptureResult& shot, Settings& store, QObject* parent)
    : QObject(parent)
    , settings(store)
    , document{.image = shot.image, .annotations = {}, .pixelScale = shot.pixelScale}
    , currentColor(store.lastColor())
    , width(store.strokeWidth())
    , style(store.arrowStyle())
    , handwriting(store.handwritten())
    , callout(store.calloutText())
    , edge(store.paletteEdge())
    , hiddenToolbar(store.toolbarHidden())
    , name(shot.suggestedName)
{
    framing.enabled = store.beautifyByDefault();
    framing.gradient = std::min(store.lastGradient(), int(Palette::gradients().size()) - 1);
}

template <typename T> void EditorModel::assign(T& member, const T& value, Field field)
{
    member = value;
    Q_EMIT changed(field);
}

void EditorModel::setTool(Tool tool)
{
    const auto previous = currentTool;
    assign(currentTool, tool, Field::tool);
    if (tool != Tool::crop)
        setCropRect({});
    if (tool == Tool::arrow && previous != Tool::arrow)
        setShowArrowOptions(true);
    if (!keepsSelection(tool))
        setSelectedID({});
}

void EditorModel::setColor(const QColor& color)
{
    assign(currentColor, color, Field::color);
    settings.setLastColor(color);
}

void EditorModel::setStrokeWidth(double points)
{
    assign(width, points, Field::strokeWidth);
    settings.setStrokeWidth(points);
}

void EditorModel::setArrowStyle(ArrowStyle value)
{
    assign(style, value, Field::arrowStyle);
    settings.setArrowStyle(value);
}

void EditorModel::setHandwritten(bool on)
{
    assign(handwriting, on, Field::handwritten);
    settings.setHandwritten(on);
}

void EditorModel::setShowArrowOptions(bool shown) { assign(arrowOptions, shown, Field::showArrowOptions); }

void EditorModel::setFilled(bool on) { assign(fill, on, Field::filled); }

void EditorModel::setCalloutText(bool on)
{
    assign(callout, on, Field::calloutText);
    settings.setCalloutText(on);
}

void EditorModel::setBlurStyle(BlurStyle value) { assign(redaction, value, Field::blurStyle); }

void EditorModel::setBeautify(const BeautifySettings& value) { assign(framing, value, Field::beautify); }

void EditorModel::setSelectedID(const std::optional<QUuid>& id) { assign(selection, id, Field::selectedID); }

void EditorModel::setCropRect(const std::optional<QRectF>& documentRect)
{
    assign(crop, documentRect, Field::cropRect);
}

void EditorModel::setPaletteEdge(PaletteEdge value)
{
    assign(edge, value, Field::paletteEdge);
    settings.setPaletteEdge(value);
}

void EditorModel::setToolbarHidden(bool hidden)
{
    assign(hiddenToolbar, hidden, Field::toolbarHidden);
    settings.setToolbarHidden(hidden);
}

double EditorModel::lineWidth() const { return width * document.pixelScale; }

double EditorModel::fontSize() const { return (std::min(width, 10.0) * 2.6 + 15) * document.pixelScale; }

int EditorModel::nextStepNumber() const
{
    int highest = 0;
    for (const auto& mark : document.annotations)
        if (mark.kind == AnnotationKind::step)
            highest = std::max(highest, mark.number);
    return highest + 1;
}

const Annotation* EditorModel::selected() const
{
    return selection ? document.annotation(*selection) : nullptr;
}

void EditorModel::commit(const DocumentChange& change)
{
    undoStack.append(document);
    if (undoStack.size() > undoLimit)
        undoStack.removeFirst();
    redoStack.clear();
    updateWithoutUndo(change);
    announceCounts();
}

void EditorModel::updateWithoutUndo(const DocumentChange& change)
{
    change(document);
    Q_EMIT changed(Field::doc);
}

void EditorModel::updateWithoutUndo(const QUuid& id, const AnnotationChange& change)
{
    const auto& marks = std::as_const(document.annotations);
    const auto found
        = std::find_if(marks.begin(), marks.end(), [&](const auto& mark) { return mark.id == id; });
    if (found == marks.end())
        return;
    change(document.annotations[found - marks.begin()]);
    Q_EMIT changed(Field::doc);
}

void EditorModel::pushUndoCheckpoint(Document snapshot)
{
    undoStack.append(std::move(snapshot));
    redoStack.clear();
    announceCounts();
}

void EditorModel::undo()
{
    if (undoStack.isEmpty())
        return;
    redoStack.append(std::exchange(document, undoStack.takeLast()));
    Q_EMIT changed(Field::doc);
    setSelectedID({});
    announceCounts();
}

void EditorModel::redo()
{
    if (redoStack.isEmpty())
        return;
    undoStack.append(std::exchange(document, redoStack.takeLast()));
    Q_EMIT changed(Field::doc);
    announceCounts();
}

void EditorModel::add(const Annotation& annotation)
{
    commit([&](Document& doc) { doc.annotations.append(annotation); });
}

void EditorModel::insertImage(const QImage& image, QPointF center, double sourceScale)
{
    const QSizeF natural = QSizeF(image.size()) * (document.pixelScale / std::max(sourceScale, 1.0));
    const auto room = document.imageSize() * insertedPart;
    const double fit = std::min({1.0, room.width() / std::max(natural.width(), 1.0),
        room.height() / std::max(natural.height(), 1.0)});
    const QPointF half(natural.width() * fit / 2, natural.height() * fit / 2);

    const Annotation mark{.kind = AnnotationKind::image,
        .start = center - half,
        .end = center + half,
        .color = currentColor,
        .lineWidth = lineWidth(),
        .image = image};
    add(mark);
    setTool(Tool::select);
    setSelectedID(mark.id);
}

void EditorModel::deleteSelected()
{
    if (!selection)
        return;
    commit([id = *selection](
               Document& doc) { doc.annotations.removeIf([&](const auto& mark) { return mark.id == id; }); });
    setSelectedID({});
}

void EditorModel::clearAnnotations()
{
    if (!document.annotations.isEmpty())
        commit([](Document& doc) { doc.annotations.clear(); });
}

void EditorModel::restyleSelected(const AnnotationChange& change)
{
    if (!selected())
        return;
    commit([&](Document& doc) {
        for (auto& mark : doc.annotations)
            if (mark.id == *selection)
                return change(mark);
    });
}

void EditorModel::applyCrop()
{
    const auto area = outwardRounded(crop.value_or(QRectF())) & document.image.rect();
    const bool largeEnough = crop && area.width() >= leastCrop && area.height() >= leastCrop
        && crop->width() >= leastCrop && crop->height() >= leastCrop;
    auto cut = largeEnough ? document.image.copy(area) : QImage();
    if (cut.isNull()) {
        setCropRect({});
        return;
    }
    commit([&](Document& doc) {
        doc.image = cut;
        for (auto& mark : doc.annotations)
            mark.offset(-QPointF(area.topLeft()));
    });
    setCropRect({});
    setTool(Tool::arrow);
}

QImage EditorModel::renderFinal() { return Exporter::render(document, framing, effects); }

void EditorModel::announceCounts()
{
    Q_EMIT changed(Field::undoCount);
    Q_EMIT changed(Field::redoCount);
}

} // namespace pintalux
