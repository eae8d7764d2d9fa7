// SPDX-License-Identifier: MIT
#include "controls/TextField.h"

#include "controls/theme/ControlPainting.h"
#include "platform/graphics/Draw.h"

#include <QEvent>
#include <QPainter>

namespace pintalux {

namespace {

constexpr int sidePadding = 8;
constexpr double focusWidth = 2;

} // namespace

TextField::TextField(QWidget* parent)
    : QLineEdit(parent)
{
    setFrame(false);
    setTextMargins(sidePadding, 0, sidePadding, 0);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setFont(toolkitFont(Draw::systemFont(13, FontWeight::regular)));
    connect(this, &QLineEdit::textEdited, this, [this] { setWrong(false); });
    applyTheme();
}

void TextField::setWrong(bool isWrong)
{
    if (std::exchange(wrong, isWrong) != isWrong)
        update();
}

void TextField::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::PaletteChange)
        applyTheme();
    QLineEdit::changeEvent(event);
}

// The toolkit paints the text; its ground is ours.
void TextField::applyTheme()
{
    const auto& theme = Theme::of(palette());
    auto colors = palette();
    if (colors.color(QPalette::Text) == theme.text && colors.color(QPalette::Base) == Qt::transparent)
        return;
    colors.setColor(QPalette::Base, Qt::transparent);
    colors.setColor(QPalette::Text, theme.text);
    colors.setColor(QPalette::PlaceholderText, theme.text2);
    colors.setColor(QPalette::Highlight, theme.brand);
    colors.setColor(QPalette::HighlightedText, Qt::white);
    setPalette(colors);
}

void TextField::paintEvent(QPaintEvent* event)
{
    {
        const auto& theme = Theme::of(palette());
        QPainter painter(this);
        const bool focused = hasFocus();
        ControlPainting::box(QRectF(rect()), Theme::controlRadius, theme.field,
            wrong         ? theme.bad
                : focused ? theme.focus
                          : theme.control,
            focused ? focusWidth : 1, painter);
    }
    QLineEdit::paintEvent(event);
}

} // namespace pintalux
