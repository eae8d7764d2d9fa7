// SPDX-License-Identifier: MIT
#include "editor/bars/InfoText.h"

#include "controls/theme/Theme.h"
#include "model/Command.h"
#include "platform/graphics/Draw.h"
#include "platform/graphics/Geometry.h"
#include "platform/graphics/TextLine.h"

#include <QPainter>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

// Points.
constexpr double valueSize = 12;
constexpr double captionSize = 10;
constexpr double valueBaseline = 14; ///< in a widget of `infoHeight`
constexpr double captionBaseline = 26;
constexpr int infoHeight = 32;
constexpr double chipSize = 20;
constexpr double chipRadius = 6;
constexpr double chipGap = 8;
constexpr double colorPadding = 8;

Font valueFont() { return Draw::systemFont(valueSize, FontWeight::semibold); }
Font hexFont() { return Draw::monospacedFont(valueSize, FontWeight::medium); }
Font captionFont() { return Draw::systemFont(captionSize, FontWeight::medium); }

const QString& colorCaption()
{
    static const auto text = u"color"_s;
    return text;
}

double widthOf(const QString& text, const Font& font)
{
    TextLine line;
    line.appendWithEvenDigits(text, {font, Qt::black});
    return line.size().width();
}

void drawOnBaseline(const QString& text, const TextAttributes& attributes, QPointF start, QPainter& painter)
{
    TextLine line;
    line.appendWithEvenDigits(text, attributes);
    const double ascent = TextBlock(text, attributes).ascent();
    GraphicsContext context(painter);
    line.draw(context, start - QPointF(0, ascent));
}

} // namespace

InfoText::InfoText(const QString& name, const QString& widestValue, QWidget* parent)
    : QWidget(parent)
    , caption(name)
{
    const double width = std::max(widthOf(widestValue, valueFont()), widthOf(caption, captionFont()));
    setFixedSize(int(std::ceil(width)), infoHeight);
    setAccessibleName(caption);
}

void InfoText::setValue(const QString& value) { setValue(value, caption); }

void InfoText::setValue(const QString& value, const QString& name)
{
    if (value == text && name == caption)
        return; // told with every event of a drag
    text = value;
    caption = name;
    setAccessibleName(value + u' ' + caption);
    update();
}

void InfoText::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const auto& theme = Theme::of(palette());
    drawOnBaseline(text, {valueFont(), theme.text}, {0, valueBaseline}, painter);
    drawOnBaseline(caption, {captionFont(), theme.text2}, {0, captionBaseline}, painter);
}

HoverColorButton::HoverColorButton(QWidget* parent)
    : ChromeButton(help(Command::copyHoverColor), Theme::controlRadius, parent)
{
    const double text = std::max(widthOf(u"#DDDDDD"_s, hexFont()), widthOf(colorCaption(), captionFont()));
    setFixedSize(int(std::ceil(chipInset + chipSize + chipGap + text + colorPadding)), infoHeight);
}

void HoverColorButton::setColor(const std::optional<QColor>& hovered, const QString& hexText)
{
    if (hexText == hex && hovered == color)
        return;
    color = hovered;
    hex = hexText;
    setAccessibleDescription(hex);
    update();
}

void HoverColorButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    fillForPointer(painter, Draw::roundedRect(rect(), cornerRadius()));
    const QRectF chip(chipInset, (height() - chipSize) / 2, chipSize, chipSize);
    painter.fillPath(Draw::roundedRect(chip, chipRadius), color.value_or(theme().well));
    painter.setPen(QPen(theme().swatchEdge(), 1));
    painter.drawPath(Draw::roundedRect(expanded(chip, -0.5), chipRadius - 0.5));
    const double left = chip.right() + chipGap;
    drawOnBaseline(color ? hex : u"—"_s, {hexFont(), theme().text}, {left, valueBaseline}, painter);
    drawOnBaseline(colorCaption(), {captionFont(), theme().text2}, {left, captionBaseline}, painter);
}

} // namespace pintalux
