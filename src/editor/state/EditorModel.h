// SPDX-License-Identifier: MIT
#pragma once

#include "editor/state/DocumentEditing.h"
#include "editor/state/History.h"
#include "editor/state/Style.h"
#include "model/BeautifySettings.h"
#include "model/CaptureResult.h"
#include "model/Document.h"
#include "render/EffectCache.h"
#include "settings/Settings.h"

#include <QList>
#include <QObject>
#include <QRectF>

#include <array>
#include <functional>
#include <optional>

namespace pintalux {

/// The state of one editor, put together: the document and its history, the style of new marks, the tool, the
/// selection, the crop rectangle that is being drawn, the framing, and where the palette is.
///
/// Every change of the document goes through here, and nobody is told of a change before all of it is made.
/// Main thread only.
class EditorModel : public QObject {
    Q_OBJECT

public:
    /// The fields that announce themselves.
    enum class Field {
        doc,
        tool,
        color,
        strokeWidth,
        arrowStyle,
        handwritten,
        showArrowOptions,
        filled,
        calloutText,
        blurStyle,
        beautify,
        selectedID,
        cropRect,
        paletteEdge,
        toolbarHidden,
        undoCount,
        redoCount,
    };
    Q_ENUM(Field)

    using DocumentChange = std::function<void(Document&)>;
    using AnnotationChange = std::function<void(Annotation&)>;

    /// The stroke widths offered as buttons, in points.
    static constexpr std::array<double, 3> widths{2, 4, 7};
    /// What the width slider reaches, in points.
    static constexpr StrokeRange strokeRange{thinnestStroke, thickestStroke};

    /// The style comes from the settings, and what a person chooses goes there.
    EditorModel(const CaptureResult& shot, Settings& settings, QObject* parent = nullptr);

    const Document& doc() const { return document; }
    Tool tool() const { return currentTool; }
    const Style& style() const { return currentStyle; }
    /// What the controls show: the selected mark's own values, where it has them, or the style of new marks.
    Style shownStyle() const;
    const QColor& color() const { return currentStyle.color; }
    double strokeWidth() const { return currentStyle.strokeWidth; } ///< points
    ArrowStyle arrowStyle() const { return currentStyle.arrowStyle; }
    bool handwritten() const { return currentStyle.handwritten; }
    bool showArrowOptions() const { return arrowOptions; }
    bool filled() const { return currentStyle.filled; }
    bool calloutText() const { return currentStyle.calloutText; }
    BlurStyle blurStyle() const { return currentStyle.blurStyle; }
    const BeautifySettings& beautify() const { return framing; }
    const std::optional<QUuid>& selectedID() const { return selection; }
    /// In document pixels; set only while the tool is `crop`.
    const std::optional<QRectF>& cropRect() const { return crop; }
    PaletteEdge paletteEdge() const { return edge; }
    bool toolbarHidden() const { return hiddenToolbar; }
    qsizetype undoCount() const { return history.undoCount(); }
    qsizetype redoCount() const { return history.redoCount(); }
    const std::optional<QString>& suggestedName() const { return name; }
    EffectCache& cache() { return effects; }
    Settings& preferences() { return settings; }

    /// Leaving `crop` drops the crop rectangle, coming to `arrow` opens its options, and tools that cannot
    /// reshape marks drop the selection.
    void setTool(Tool tool);
    void setColor(const QColor& color);
    void setStrokeWidth(double points);
    void setArrowStyle(ArrowStyle style);
    void setHandwritten(bool on);
    void setShowArrowOptions(bool shown);
    void setFilled(bool on);
    void setCalloutText(bool on);
    void setBlurStyle(BlurStyle style);
    void setBeautify(const BeautifySettings& beautify);
    void setSelectedID(const std::optional<QUuid>& id);
    void setCropRect(const std::optional<QRectF>& documentRect);
    void setPaletteEdge(PaletteEdge edge);
    void setToolbarHidden(bool hidden);

    /// Stroke width of new marks, in document pixels.
    double lineWidth() const { return currentStyle.lineWidth(document.pixelScale); }
    /// Font size of new texts and step markers, in document pixels.
    double fontSize() const { return currentStyle.fontSize(document.pixelScale); }
    /// One more than the highest step number in use.
    int nextStepNumber() const;
    /// The selected mark; null when nothing is selected or the mark is gone.
    const Annotation* selected() const;

    /// Changes the document as one undo step. The oldest steps beyond `History::limit` are forgotten.
    void commit(const DocumentChange& change);
    /// Changes the document without a trace in the history, for a drag that ends in a checkpoint.
    void updateWithoutUndo(const DocumentChange& change);
    /// The same for one mark; nothing when it does not exist.
    void updateWithoutUndo(const QUuid& id, const AnnotationChange& change);
    /// Records `snapshot`, the document before a drag, as one undo step.
    void pushUndoCheckpoint(Document snapshot);
    void undo();
    void redo();

    void add(const Annotation& annotation);
    /// Puts a picture on the document, centred on a document pixel, at its natural size but at most 45 % of
    /// the document's width and height, and selects it. `sourceScale` is the picture's pixels per point.
    void insertImage(const QImage& image, QPointF center, double sourceScale);
    void deleteSelected();
    /// Copies the selected mark (`DocumentEditing::duplicateMark`) and selects the copy.
    void duplicateSelected();
    /// Puts the selected mark past the next one that it touches, if there is one.
    void moveSelected(DocumentEditing::Order order);
    void clearAnnotations();
    /// Changes the selected mark as one undo step; nothing when there is none.
    void restyleSelected(const AnnotationChange& change);
    /// Cuts the document to the crop rectangle, rounded outward to whole pixels. A rectangle with less than
    /// two pixels of the image on a side is only dropped.
    void applyCrop();

    /// The finished picture, framed if framing is on. Null when it cannot be made.
    QImage renderFinal();

Q_SIGNALS:
    /// The field was assigned; also when its value stayed the same. What was assigned together is announced
    /// when all of it is.
    void changed(pintalux::EditorModel::Field field);
    /// `shownStyle` became different, or a part of the style of new marks was assigned.
    void shownStyleChanged();

private:
    /// What is assigned while one lives belongs to one change, announced at its end: each field once, in the
    /// order of its first assignment. A change within another belongs to that one.
    class Change {
    public:
        explicit Change(EditorModel& changed)
            : model(changed)
        {
            ++model.changesUnderWay;
        }
        ~Change();
        Change(const Change&) = delete;
        Change& operator=(const Change&) = delete;

    private:
        EditorModel& model;
    };

    template <typename T> void assign(T& member, const T& value, Field field);
    void assigned(Field field);
    void historyChanged();

    Settings& settings;
    Document document;
    History history;
    Style currentStyle;
    Tool currentTool = Tool::arrow;
    bool arrowOptions = true;
    BeautifySettings framing;
    std::optional<QUuid> selection;
    std::optional<QRectF> crop; ///< document pixels
    PaletteEdge edge;
    bool hiddenToolbar;
    EffectCache effects;
    std::optional<QString> name;
    Style announcedStyle; ///< the latest that the controls were told of
    int changesUnderWay = 0;
    QList<Field> assignedFields; ///< by the change that is under way
};

} // namespace pintalux
