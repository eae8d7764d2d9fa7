// SPDX-License-Identifier: MIT
#pragma once

#include "model/BeautifySettings.h"
#include "model/CaptureResult.h"
#include "model/Document.h"
#include "render/EffectCache.h"
#include "settings/Settings.h"

#include <QColor>
#include <QList>
#include <QObject>
#include <QRectF>
#include <QUuid>

#include <array>
#include <functional>
#include <optional>

namespace pintalux {

/// The state of one editor: the document, the tool and its style, the selection, the crop rectangle that is
/// being drawn, where the palette is, and the history.
///
/// Every change of the document goes through here. Undo works on snapshots of the whole document, which share
/// their pixels and their marks until one of them changes. Main thread only.
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
    struct Range {
        double lower;
        double upper;
    };
    /// What the width slider reaches, in points.
    static constexpr Range strokeRange{thinnestStroke, thickestStroke};
    /// Most snapshots that a commit leaves in the history.
    static constexpr qsizetype undoLimit = 200;

    explicit EditorModel(
        const CaptureResult& shot, Settings& settings = Settings::shared(), QObject* parent = nullptr);

    const Document& doc() const { return document; }
    Tool tool() const { return currentTool; }
    const QColor& color() const { return currentColor; }
    double strokeWidth() const { return width; } ///< points
    ArrowStyle arrowStyle() const { return style; }
    bool handwritten() const { return handwriting; }
    bool showArrowOptions() const { return arrowOptions; }
    bool filled() const { return fill; }
    bool calloutText() const { return callout; }
    BlurStyle blurStyle() const { return redaction; }
    const BeautifySettings& beautify() const { return framing; }
    const std::optional<QUuid>& selectedID() const { return selection; }
    /// In document pixels; set only while the tool is `crop`.
    const std::optional<QRectF>& cropRect() const { return crop; }
    PaletteEdge paletteEdge() const { return edge; }
    bool toolbarHidden() const { return hiddenToolbar; }
    qsizetype undoCount() const { return undoStack.size(); }
    qsizetype redoCount() const { return redoStack.size(); }
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
    double lineWidth() const;
    /// Font size of new texts and step markers, in document pixels.
    double fontSize() const;
    /// One more than the highest step number in use.
    int nextStepNumber() const;
    /// The selected mark; null when nothing is selected or the mark is gone.
    const Annotation* selected() const;

    /// Changes the document as one undo step. The oldest steps beyond `undoLimit` are forgotten.
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
    void clearAnnotations();
    /// Changes the selected mark as one undo step; nothing when there is none.
    void restyleSelected(const AnnotationChange& change);
    /// Cuts the document to the crop rectangle, rounded outward to whole pixels. A rectangle with less than
    /// two pixels of the image on a side is only dropped.
    void applyCrop();

    /// The finished picture, framed if framing is on. Null when it cannot be made.
    QImage renderFinal();

Q_SIGNALS:
    /// The field was assigned; also when its value stayed the same.
    void changed(pintalux::EditorModel::Field field);

private:
    template <typename T> void assign(T& member, const T& value, Field field);
    void announceCounts();

    Settings& settings;
    Document document;
    Tool currentTool = Tool::arrow;
    QColor currentColor;
    double width;
    ArrowStyle style;
    bool handwriting;
    bool arrowOptions = true;
    bool fill = false;
    bool callout;
    BlurStyle redaction = BlurStyle::pixelate;
    BeautifySettings framing;
    std::optional<QUuid> selection;
    std::optional<QRectF> crop;
    PaletteEdge edge;
    bool hiddenToolbar;
    EffectCache effects;
    std::optional<QString> name;
    QList<Document> undoStack; ///< oldest first
    QList<Document> redoStack;
};

} // namespace pintalux
