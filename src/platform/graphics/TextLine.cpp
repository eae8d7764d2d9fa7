// SPDX-License-Identifier: MIT
#include "platform/graphics/TextLine.h"

#include <QTextBoundaryFinder>

namespace pintalux {

namespace {

// The layout leaves trailing spaces out of a line's width, but not those that may not break it.
QString unbreakable(QString text) { return text.replace(u' ', QChar(QChar::Nbsp)); }

bool isDigit(QChar character) { return character >= u'0' && character <= u'9'; }

double widestDigit(const TextAttributes& attributes)
{
    double widest = 0;
    for (char16_t digit = u'0'; digit <= u'9'; ++digit)
        widest = std::max(widest, TextBlock(QString(QChar(digit)), attributes).size().width());
    return widest;
}

/// Where a text may be cut without breaking what is read as one character.
QList<qsizetype> characterBoundaries(const QString& text)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    QList<qsizetype> boundaries{0};
    while (finder.toNextBoundary() >= 0)
        boundaries.append(finder.position());
    return boundaries;
}

} // namespace

void TextLine::append(const QString& text, const TextAttributes& attributes)
{
    if (text.isEmpty())
        return;
    const TextBlock block(unbreakable(text), attributes);
    append(block, block.size().width());
}

void TextLine::appendWithEvenDigits(const QString& text, const TextAttributes& attributes)
{
    const double cell = widestDigit(attributes);
    for (qsizetype from = 0, to = 0; from < text.size(); from = to) {
        const bool digit = isDigit(text[from]);
        to = from + 1;
        while (!digit && to < text.size() && !isDigit(text[to]))
            ++to;
        const TextBlock block(unbreakable(text.sliced(from, to - from)), attributes);
        append(block, digit ? cell : block.size().width());
    }
}

void TextLine::append(const TextBlock& block, double cellWidth)
{
    const auto size = block.size();
    runs.push_back({block, width + (cellWidth - size.width()) / 2});
    width += cellWidth;
    ascent = std::max(ascent, block.ascent());
    descent = std::max(descent, size.height() - block.ascent());
}

void TextLine::draw(GraphicsContext& context, QPointF topLeft) const
{
    for (const auto& [block, x] : runs)
        context.draw(block, topLeft + QPointF(x, ascent - block.ascent()));
}

QString shortenedInTheMiddle(const QString& text, const TextAttributes& attributes, double width)
{
    const auto fits = [&](const QString& candidate) {
        return TextBlock(unbreakable(candidate), attributes).size().width() <= width;
    };
    const auto line = text.simplified();
    if (fits(line))
        return line;
    const auto boundaries = characterBoundaries(line);
    const auto kept = [&](qsizetype characters) {
        const auto head = boundaries[(characters + 1) / 2];
        const auto tail = boundaries[boundaries.size() - 1 - characters / 2];
        return line.first(head).trimmed() + u'…' + line.sliced(tail).trimmed();
    };
    qsizetype fitting = 0;
    qsizetype tooMany = boundaries.size();
    while (tooMany - fitting > 1) {
        const auto middle = (fitting + tooMany) / 2;
        (fits(kept(middle)) ? fitting : tooMany) = middle;
    }
    return kept(fitting);
}

} // namespace pintalux
