// SPDX-License-Identifier: MIT
#include "editor/canvas/CanvasTextField.h"

#include "app/messages/HUD.h"
#include "controls/Menu.h"
#include "controls/theme/Theme.h"
#include "editor/canvas/CanvasPasteboard.h"
#include "platform/graphics/Color.h"
#include "platform/graphics/Geometry.h"
#include "render/export/Clipboard.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QClipboard>
#include <QGraphicsTextItem>
#include <QGuiApplication>
#include <QInputMethod>
#include <QKeyEvent>
#include <QScrollBar>
#include <QStyleHints>
#include <QStyleOptionGraphicsItem>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace pintalux {

/// The text and its selection alone. The toolkit would add a dashed frame and its own caret, which inverts
/// what is beneath: cyan on a red bubble, all but unseen on a grey one.
class CanvasTextField::Item : public QGraphicsTextItem {
public:
    /// Selected text changes places with its bubble, which may have any colour, also that of the theme.
    explicit Item(const Annotation& mark)
        : selectionGround(mark.filled ? contrasting(mark.color) : Theme::current().brand)
        , selectionText(mark.filled ? mark.color : QColor(Qt::white))
    {
    }

    /// Where the caret stands, also in what an input method composes; its width is of no use.
    QRectF caretRect() const { return inputMethodQuery(Qt::ImCursorRectangle).toRectF(); }

    void paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*) override
    {
        QAbstractTextDocumentLayout::PaintContext context;
        context.palette.setColor(QPalette::Text, defaultTextColor());
        if (textCursor().hasSelection()) {
            QAbstractTextDocumentLayout::Selection selection;
            selection.cursor = textCursor();
            selection.format.setBackground(selectionGround);
            selection.format.setForeground(selectionText);
            context.selections.append(selection);
        }
        document()->documentLayout()->draw(painter, context);
    }

private:
    QColor selectionGround;
    QColor selectionText;
};

namespace {

bool isReturn(const QKeyEvent& event)
{
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

/// The toolkit's own plain text has a space for each no-break space, which wraps differently.
QString withLineFeeds(QString raw)
{
    return raw.replace(QChar::ParagraphSeparator, u'\n').replace(QChar::LineSeparator, u'\n');
}

bool isTab(const QKeyEvent& event) { return event.key() == Qt::Key_Tab || event.key() == Qt::Key_Backtab; }

} // namespace

CanvasTextField::CanvasTextField(const Annotation& mark, QWidget* parent)
    : QGraphicsView(parent)
    , item(new Item(mark))
    , attributes(mark.textAttributes())
    , caretRim(mark.filled ? Qt::transparent : withAlpha(contrasting(mark.color), 0.5))
{
    setAccessibleName(u"Texto de la anotación"_s);
    setFrameShape(NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setAlignment(Qt::AlignLeft | Qt::AlignTop);
    setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing | QPainter::SmoothPixmapTransform);
    setViewportUpdateMode(FullViewportUpdate);
    setAcceptDrops(false);
    setBackgroundBrush(Qt::NoBrush);
    viewport()->setAutoFillBackground(false);
    viewport()->setCursor(Qt::IBeamCursor);
    auto* document = item->document();
    document->setUndoRedoEnabled(false);
    document->setPlainText(mark.text);
    TextBlock::prepare(*document, attributes, mark.wrapWidth());
    document->setUndoRedoEnabled(true);
    document->setModified(false);
    item->setDefaultTextColor(attributes.color);
    item->setTextInteractionFlags(Qt::TextEditorInteraction);
    item->setAcceptDrops(false);
    auto atEnd = item->textCursor();
    atEnd.movePosition(QTextCursor::End);
    item->setTextCursor(atEnd);

    page.setStickyFocus(true);
    page.addItem(item);
    setScene(&page);
    page.setFocusItem(item);
    setFocusPolicy(Qt::StrongFocus);
    connect(document, &QTextDocument::contentsChanged, this, &CanvasTextField::textChanged);
    connect(document->documentLayout(), &QAbstractTextDocumentLayout::documentSizeChanged, this,
        &CanvasTextField::textChanged); // also while an input method composes
}

CanvasTextField::~CanvasTextField()
{
    disconnect(item->document()->documentLayout(), nullptr, this, nullptr);
    disconnect(item->document(), nullptr, this, nullptr);
    setScene(nullptr); // the page goes before the view that shows it
}

QString CanvasTextField::text() const { return withLineFeeds(item->document()->toRawText()); }

bool CanvasTextField::isEdited() const { return item->document()->isModified(); }

void CanvasTextField::insert(const QString& text) { item->textCursor().insertText(text); }

void CanvasTextField::finishComposing()
{
    if (hasFocus())
        QGuiApplication::inputMethod()->commit();
}

bool CanvasTextField::isEmpty() const
{
    return item->document()->isEmpty()
        && item->document()->firstBlock().layout()->preeditAreaText().isEmpty();
}

// ---- Layout

void CanvasTextField::place(QPointF topLeft, double scale, QSizeF textSize)
{
    const auto* document = item->document();
    const bool wraps = document->textWidth() >= 0;
    const double itemScale = attributes.font.size * scale / TextBlock::layoutSize;
    auto size = textSize * scale;
    if (isEmpty() && !wraps)
        size.rwidth() = TextBlock(placeholder(), attributes).size().width() * scale;
    size = size.expandedTo(QSizeF(document->idealWidth(), document->size().height()) * itemScale);

    // Typing has room to grow before the next letter makes the field wider.
    const double growth = wraps ? 0 : attributes.font.size * scale / 2;
    const QRectF frame(topLeft - QPointF(3, 2),
        QSizeF(std::max(size.width() + 6 + growth, 30.0), std::max(size.height() + 4, 18.0)));
    const auto whole = frame.toAlignedRect();
    setGeometry(whole);
    setSceneRect(QRectF(QPointF(), QSizeF(whole.size())));
    item->setScale(itemScale);
    item->setPos(topLeft - whole.topLeft());
}

bool CanvasTextField::fits() const
{
    const auto size = QSizeF(item->document()->idealWidth(), item->document()->size().height());
    const auto needed = QRectF(item->pos(), size * item->scale());
    return QRectF(rect()).contains(needed);
}

void CanvasTextField::drawForeground(QPainter* painter, const QRectF&)
{
    if (isEmpty())
        drawPlaceholder(*painter);
    if (item->hasFocus())
        drawCaret(*painter);
    else
        blinking.stop();
}

void CanvasTextField::drawPlaceholder(QPainter& painter) const
{
    painter.save();
    painter.translate(item->pos());
    const double scale = item->scale() * TextBlock::layoutSize / attributes.font.size;
    painter.scale(scale, scale);
    TextBlock(placeholder(), attributes).draw(painter, {});
    painter.restore();
}

void CanvasTextField::drawCaret(QPainter& painter)
{
    const auto line = item->caretRect();
    if (line.topLeft() != caretSeen || !blinking.isActive()) {
        caretSeen = line.topLeft();
        caretIsOn = true; // it does not blink while it moves
        if (const int time = QGuiApplication::styleHints()->cursorFlashTime(); time > 1)
            blinking.start(time / 2, this);
    }
    if (!caretIsOn)
        return;
    constexpr double width = 1.5;
    constexpr double rimWidth = 0.75;
    const auto place = item->mapRectToScene(line);
    const QRectF bar(place.x() - width / 2, place.y(), width, place.height());
    painter.fillRect(expanded(bar, rimWidth), caretRim);
    painter.fillRect(bar, attributes.color);
}

void CanvasTextField::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != blinking.timerId())
        return QGraphicsView::timerEvent(event);
    caretIsOn = !caretIsOn;
    viewport()->update();
}

// ---- Input

bool CanvasTextField::event(QEvent* event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        const auto* key = static_cast<QKeyEvent*>(event);
        if (isReturn(*key) || isTab(*key) || key->key() == Qt::Key_Escape) {
            event->accept();
            return true;
        }
        // With nothing to undo here, the key means the picture.
        const auto* text = item->document();
        if ((key->matches(QKeySequence::Undo) && !text->isUndoAvailable())
            || (key->matches(QKeySequence::Redo) && !text->isRedoAvailable())) {
            event->ignore();
            return false;
        }
    }
    if (event->type() == QEvent::KeyPress && isTab(*static_cast<QKeyEvent*>(event))) {
        keyPressEvent(static_cast<QKeyEvent*>(event)); // before the toolkit moves the focus
        return true;
    }
    return QGraphicsView::event(event);
}

void CanvasTextField::keyPressEvent(QKeyEvent* event)
{
    if (isReturn(*event) && event->modifiers().testFlag(Qt::AltModifier))
        item->textCursor().insertBlock();
    else if (isReturn(*event) || isTab(*event))
        Q_EMIT committed();
    else if (event->key() == Qt::Key_Escape)
        Q_EMIT cancelled();
    else if (event->matches(QKeySequence::Cut))
        cut();
    else if (event->matches(QKeySequence::Copy))
        copy();
    else if (event->matches(QKeySequence::Paste))
        paste();
    else
        QGraphicsView::keyPressEvent(event);
    event->accept(); // a key typed here never means a tool
}

void CanvasTextField::focusOutEvent(QFocusEvent* event)
{
    QGraphicsView::focusOutEvent(event);
    // The focus comes back from a menu and from another window.
    const auto reason = event->reason();
    if (reason != Qt::PopupFocusReason && reason != Qt::ActiveWindowFocusReason
        && reason != Qt::MenuBarFocusReason)
        Q_EMIT committed();
}

void CanvasTextField::pastePlainText(const QString& text)
{
    // What nobody writes on a picture, and the toolkit may never finish laying out.
    constexpr qsizetype longestText = 20'000;
    if (item->document()->characterCount() + text.size() > longestText)
        return HUD::show(u"El texto es demasiado largo para una marca"_s, u"exclamationmark.triangle"_s);
    auto caret = item->textCursor();
    caret.insertText(text);
    item->setTextCursor(caret);
}

void CanvasTextField::moveCaretTo(QPoint viewportPoint)
{
    const auto at = item->mapFromScene(mapToScene(viewportPoint));
    auto caret = item->textCursor();
    caret.setPosition(item->document()->documentLayout()->hitTest(at, Qt::FuzzyHit));
    item->setTextCursor(caret);
}

void CanvasTextField::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && !itemAt(event->position().toPoint()))
        moveCaretTo(event->position().toPoint()); // in the field's margin
    else if (event->button() != Qt::MiddleButton)
        QGraphicsView::mousePressEvent(event);
    event->accept(); // the canvas would take the press for one beside the field
}

void CanvasTextField::mouseReleaseEvent(QMouseEvent* event)
{
    // The toolkit would insert the selection with its fonts and colours.
    if (event->button() == Qt::MiddleButton && QGuiApplication::clipboard()->supportsSelection()) {
        moveCaretTo(event->position().toPoint());
        pastePlainText(CanvasPasteboard::text(QClipboard::Selection));
    } else {
        QGraphicsView::mouseReleaseEvent(event);
    }
    event->accept();
}

void CanvasTextField::contextMenuEvent(QContextMenuEvent* event)
{
    const bool isSelected = item->textCursor().hasSelection();
    auto* menu = new Menu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const auto add = [&](const QString& title, bool isPossible, void (CanvasTextField::*run)()) {
        auto* action = menu->addAction(title);
        action->setEnabled(isPossible);
        connect(action, &QAction::triggered, this, run);
    };
    add(u"Cortar"_s, isSelected, &CanvasTextField::cut);
    add(u"Copiar"_s, isSelected, &CanvasTextField::copy);
    add(u"Pegar"_s, CanvasPasteboard::offersText(), &CanvasTextField::paste);
    menu->addSeparator();
    add(u"Seleccionar todo"_s, !item->document()->isEmpty(), &CanvasTextField::selectAll);
    menu->popUpAt(event->globalPos());
    event->accept();
}

void CanvasTextField::copy()
{
    const auto caret = item->textCursor();
    if (caret.hasSelection())
        Clipboard::copy(withLineFeeds(caret.selectedText()));
}

void CanvasTextField::cut()
{
    copy();
    item->textCursor().removeSelectedText();
}

void CanvasTextField::paste() { pastePlainText(CanvasPasteboard::text()); }

void CanvasTextField::selectAll()
{
    auto caret = item->textCursor();
    caret.select(QTextCursor::Document);
    item->setTextCursor(caret);
}

} // namespace pintalux
