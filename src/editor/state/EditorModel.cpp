// SPDX-License-Identifier: MIT
#include "editor/state/EditorModel.h"

#include "model/Palette.h"
#include "render/export/Exporter.h"

#include <algorithm>
#include <utility>

namespace pintalux {

namespace {

bool isOfStyle(EditorModel::Field field)
{
    using Field = EditorModel::Field;
    constexpr std::array fields{Field::color, Field::strokeWidth, Field::arrowStyle, Field::handwritten,
        Field::filled, Field::calloutText, Field::blurStyle};
    return std::ranges::find(fields, field) != fields.end();
}

} // namespace

EditorModel::EditorModel(const CaptureResult& shot, Settings& store, QObject* parent)
    : QObject(parent)
    , settings(store)
    , document{.image = shot.image, .annotations = {}, .pixelScale = shot.pixelScale}
    , currentStyle(Style::lastChosen(store.values()))
    , edge(store.paletteEdge())
    , hiddenToolbar(store.toolbarHidden())
    , name(shot.suggestedName)
    , announcedStyle(currentStyle)
{
    framing.enabled = store.beautifyByDefault();
    framing.gradient = std::min(store.lastGradient(), int(Palette::gradients().size()) - 1);
}

EditorModel::Change::~Change()
{
    if (--model.changesUnderWay > 0)
        return;
    const auto fields = std::exchange(model.assignedFields, {});
    const auto former = std::exchange(model.announcedStyle, model.shownStyle());
    const bool restyled = former != model.announcedStyle || std::ranges::any_of(fields, isOfStyle);
    for (const auto field : fields)
        Q_EMIT model.changed(field);
    if (restyled)
        Q_EMIT model.shownStyleChanged();
}

void EditorModel::assigned(Field field)
{
    if (!assignedFields.contains(field))
        assignedFields.append(field);
}

template <typename T> void EditorModel::assign(T& member, const T& value, Field field)
{
    const Change change(*this);
    member = value;
    assigned(field);
}

void EditorModel::setTool(Tool tool)
{
    const Change change(*this);
    const auto previous = currentTool;
    assign(currentTool, tool, Field::tool);
    if (tool != Tool::crop)
        setCropRect({});
    if (tool == Tool::arrow && previous != Tool::arrow)
        setShowArrowOptions(true);
    if (!reshapesMarks(tool))
        setSelectedID({});
}

void EditorModel::setColor(const QColor& color)
{
    assign(currentStyle.color, color, Field::color);
    settings.setLastColor(color);
}

void EditorModel::setStrokeWidth(double points)
{
    assign(currentStyle.strokeWidth, points, Field::strokeWidth);
    settings.setStrokeWidth(points);
}

void EditorModel::setArrowStyle(ArrowStyle value)
{
    assign(currentStyle.arrowStyle, value, Field::arrowStyle);
    settings.setArrowStyle(value);
}

void EditorModel::setHandwritten(bool on)
{
    assign(currentStyle.handwritten, on, Field::handwritten);
    settings.setHandwritten(on);
}

void EditorModel::setShowArrowOptions(bool shown) { assign(arrowOptions, shown, Field::showArrowOptions); }

void EditorModel::setFilled(bool on) { assign(currentStyle.filled, on, Field::filled); }

void EditorModel::setCalloutText(bool on)
{
    assign(currentStyle.calloutText, on, Field::calloutText);
    settings.setCalloutText(on);
}

void EditorModel::setBlurStyle(BlurStyle value) { assign(currentStyle.blurStyle, value, Field::blurStyle); }

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

Style EditorModel::shownStyle() const
{
    const auto* mark = selected();
    return mark ? currentStyle.shownFor(*mark, document.pixelScale) : currentStyle;
}

int EditorModel::nextStepNumber() const { return DocumentEditing::nextStepNumber(document); }

const Annotation* EditorModel::selected() const
{
    return selection ? document.annotation(*selection) : nullptr;
}

void EditorModel::commit(const DocumentChange& change)
{
    const Change whole(*this);
    history.record(document);
    updateWithoutUndo(change);
    historyChanged();
}

void EditorModel::updateWithoutUndo(const DocumentChange& change)
{
    const Change whole(*this);
    change(document);
    assigned(Field::doc);
}

void EditorModel::updateWithoutUndo(const QUuid& id, const AnnotationChange& change)
{
    const Change whole(*this);
    if (DocumentEditing::changeMark(document, id, change))
        assigned(Field::doc);
}

void EditorModel::pushUndoCheckpoint(Document snapshot)
{
    const Change whole(*this);
    history.recordCheckpoint(std::move(snapshot));
    historyChanged();
}

void EditorModel::undo()
{
    const Change whole(*this);
    if (!history.undo(document))
        return;
    assigned(Field::doc);
    setSelectedID({});
    historyChanged();
}

void EditorModel::redo()
{
    const Change whole(*this);
    if (!history.redo(document))
        return;
    assigned(Field::doc);
    historyChanged();
}

void EditorModel::add(const Annotation& annotation)
{
    commit([&](Document& doc) { doc.annotations.append(annotation); });
}

void EditorModel::insertImage(const QImage& image, QPointF center, double sourceScale)
{
    const auto place = DocumentEditing::placeOfPicture(document, image.size(), center, sourceScale);
    const Annotation mark{.kind = AnnotationKind::image,
        .start = place.topLeft(),
        .end = place.bottomRight(),
        .color = color(),
        .lineWidth = lineWidth(),
        .image = image};
    const Change whole(*this);
    add(mark);
    setTool(Tool::select);
    setSelectedID(mark.id);
}

void EditorModel::deleteSelected()
{
    if (!selection)
        return;
    const Change whole(*this);
    commit([id = *selection](Document& doc) { DocumentEditing::removeMark(doc, id); });
    setSelectedID({});
}

void EditorModel::duplicateSelected()
{
    if (!selected())
        return;
    const Change whole(*this);
    std::optional<QUuid> copy;
    commit([&](Document& doc) { copy = DocumentEditing::duplicateMark(doc, *selection); });
    setSelectedID(copy);
}

void EditorModel::moveSelected(DocumentEditing::Order order)
{
    const auto* mark = selected();
    const auto place = mark ? DocumentEditing::placePast(document, mark->id, order) : std::nullopt;
    if (place)
        commit([from = mark - document.annotations.constData(), to = *place](
                   Document& doc) { doc.annotations.move(from, to); });
}

void EditorModel::clearAnnotations()
{
    if (!document.annotations.isEmpty())
        commit([](Document& doc) { doc.annotations.clear(); });
}

void EditorModel::restyleSelected(const AnnotationChange& change)
{
    if (selected())
        commit([&](Document& doc) { DocumentEditing::changeMark(doc, *selection, change); });
}

void EditorModel::applyCrop()
{
    const Change whole(*this);
    const auto cut = crop ? DocumentEditing::cropped(document, *crop) : std::nullopt;
    if (!cut)
        return setCropRect({});
    commit([&](Document& doc) { doc = *cut; });
    setCropRect({});
    setTool(Tool::arrow);
}

QImage EditorModel::renderFinal() { return Exporter::render(document, framing, effects); }

void EditorModel::historyChanged()
{
    assigned(Field::undoCount);
    assigned(Field::redoCount);
}

} // namespace pintalux
