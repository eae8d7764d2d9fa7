// SPDX-License-Identifier: MIT
#include "platform/graphics/TextBlock.h"

#include <QAbstractTextDocumentLayout>
#include <QCache>
#include <QPainter>
#include <QPalette>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextLayout>

namespace pintalux {

namespace {

/// All that a layout depends on; neither the colour nor the size is among it.
struct LayoutKey {
    QString text;
    QStringList families;
    FontWeight weight;
    double lineHeightMultiple;
    double wrapWidth; ///< in layout pixels; negative for none

    bool operator==(const LayoutKey&) const = default;
};

size_t qHash(const LayoutKey& key, size_t seed)
{
    return qHashMulti(seed, key.text, key.families, int(key.weight), key.lineHeightMultiple, key.wrapWidth);
}

using SharedDocument = std::shared_ptr<const QTextDocument>;

SharedDocument laidOut(
    const LayoutKey& key, const TextAttributes& attributes, std::optional<double> wrapWidth)
{
    // Marks are measured on every pointer move; a layout costs some 40 µs, finding it again next to nothing.
    constexpr int layoutsKept = 256;
    thread_local QCache<LayoutKey, SharedDocument> cache(layoutsKept);
    if (const auto* known = cache.object(key))
        return *known;

    auto document = std::make_shared<QTextDocument>();
    document->setUndoRedoEnabled(false);
    document->setPlainText(key.text);
    TextBlock::prepare(*document, attributes, wrapWidth);
    document->size(); // lays out now, while the document may still change
    cache.insert(key, new SharedDocument(document));
    return document;
}

} // namespace

TextBlock::TextBlock(const QString& text, const TextAttributes& attributes, std::optional<double> wrapWidth)
    : color(attributes.color)
    , scale(attributes.font.size / layoutSize)
{
    const LayoutKey key{text, attributes.font.families, attributes.font.weight, attributes.lineHeightMultiple,
        wrapWidth ? *wrapWidth / scale : -1};
    document = laidOut(key, attributes, wrapWidth);
}

QSizeF TextBlock::size() const { return QSizeF(document->idealWidth(), document->size().height()) * scale; }

double TextBlock::ascent() const { return document->firstBlock().layout()->lineAt(0).ascent() * scale; }

void TextBlock::draw(QPainter& painter, QPointF topLeft) const
{
    QAbstractTextDocumentLayout::PaintContext context;
    context.palette.setColor(QPalette::Text, color);
    painter.save();
    painter.setRenderHints(
        QPainter::Antialiasing | QPainter::TextAntialiasing | QPainter::SmoothPixmapTransform);
    painter.translate(topLeft);
    painter.scale(scale, scale);
    document->documentLayout()->draw(&painter, context);
    painter.restore();
}

void TextBlock::prepare(
    QTextDocument& document, const TextAttributes& attributes, std::optional<double> wrapWidth)
{
    auto font = toolkitFont({attributes.font.families, layoutSize, attributes.font.weight});
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setStyleStrategy(QFont::PreferAntialias);
    document.setDefaultFont(font);
    document.setDocumentMargin(0);
    document.setUseDesignMetrics(true);

    QTextOption option;
    option.setWrapMode(wrapWidth ? QTextOption::WrapAtWordBoundaryOrAnywhere : QTextOption::ManualWrap);
    option.setUseDesignMetrics(true);
    document.setDefaultTextOption(option);
    document.setTextWidth(wrapWidth ? *wrapWidth * layoutSize / attributes.font.size : -1);

    QTextCursor cursor(&document);
    cursor.select(QTextCursor::Document);
    QTextBlockFormat block;
    block.setLineHeight(attributes.lineHeightMultiple * 100, QTextBlockFormat::ProportionalHeight);
    cursor.mergeBlockFormat(block);
}

} // namespace pintalux
