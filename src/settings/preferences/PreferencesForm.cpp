// SPDX-License-Identifier: MIT
#include "settings/preferences/PreferencesForm.h"

#include "controls/theme/ControlPainting.h"
#include "platform/graphics/Draw.h"
#include "platform/graphics/Symbol.h"
#include "platform/graphics/TextLine.h"

#include <QBoxLayout>
#include <QMouseEvent>
#include <QPainter>

namespace pintalux::Form {

namespace {

constexpr int textMargin = 5; ///< least distance of a row's content to the hairlines
constexpr double capHeight = 20;
constexpr double capPadding = 8;
constexpr double capRadius = 6;

Font fontOf(const TextRole& role) { return Draw::systemFont(role.size, role.weight); }

} // namespace

Label::Label(const QString& text, const TextRole& textRole, Fit textFit, QWidget* parent)
    : QLabel(text, parent)
    , role(textRole)
    , fit(textFit)
{
    auto policy = QSizePolicy(fit == Fit::line ? QSizePolicy::Minimum : QSizePolicy::Expanding,
        fit == Fit::wrapped ? QSizePolicy::Minimum : QSizePolicy::Fixed);
    policy.setHeightForWidth(fit == Fit::wrapped);
    setSizePolicy(policy);
}

void Label::show(const QString& text)
{
    setText(text);
    explainShortening();
    updateGeometry();
    update();
}

QSize Label::sizeHint() const
{
    const double width = ControlPainting::textWidth(text(), fontOf(role));
    return {int(std::ceil(width)), int(role.lineHeight)};
}

QSize Label::minimumSizeHint() const
{
    constexpr int least = 40;
    return fit == Fit::line ? sizeHint() : QSize(least, int(role.lineHeight));
}

int Label::heightForWidth(int width) const
{
    return int(std::ceil(double(linesIn(width).size()) * role.lineHeight));
}

QStringList Label::linesIn(double width) const
{
    return fit == Fit::wrapped ? ControlPainting::wrapped(text(), fontOf(role), width) : QStringList{text()};
}

void Label::resizeEvent(QResizeEvent* event)
{
    QLabel::resizeEvent(event);
    explainShortening();
}

void Label::explainShortening()
{
    if (fit == Fit::shortened)
        setToolTip(sizeHint().width() > width() ? text() : QString());
}

void Label::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const auto color = Theme::of(palette()).*role.color;
    const auto across = fit == Fit::shortened ? Qt::AlignRight : Qt::AlignLeft;
    QRectF line(0, 0, width(), role.lineHeight);
    if (fit != Fit::wrapped)
        line.moveTop((height() - role.lineHeight) / 2);
    for (const auto& text : linesIn(width())) {
        ControlPainting::text(text, fontOf(role), color, line, across, painter);
        line.translate(0, role.lineHeight);
    }
}

KeyCap::KeyCap(QWidget* parent)
    : QLabel(parent)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

// The caps of a list stand under each other: digits are all equally wide.
TextLine KeyCap::line() const
{
    TextLine line;
    line.appendWithEvenDigits(text(), {Draw::systemFont(12, FontWeight::medium), Theme::of(palette()).text2});
    return line;
}

QSize KeyCap::sizeHint() const
{
    return {int(std::ceil(line().size().width() + 2 * capPadding)), int(capHeight)};
}

void KeyCap::paintEvent(QPaintEvent*)
{
    const auto& theme = Theme::of(palette());
    QPainter painter(this);
    ControlPainting::box(rect(), capRadius, theme.well, theme.hair, 1, painter);
    const auto combination = line();
    GraphicsContext context(painter);
    combination.draw(context,
        QPointF((width() - combination.size().width()) / 2, (height() - combination.size().height()) / 2));
}

SymbolView::SymbolView(const QString& shown, QColor Theme::*ink, QWidget* parent)
    : QWidget(parent)
    , symbol(shown)
    , color(ink)
{
    setFixedSize(SymbolView::sizeHint());
}

void SymbolView::setSymbol(const QString& shown, QColor Theme::*ink)
{
    symbol = shown;
    color = ink;
    update();
}

void SymbolView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    Symbol::draw(symbol, rect(), Theme::of(palette()).*color, painter);
}

Row::Row(const QString& text, int height)
    : line(new QHBoxLayout(this))
    , texts(new QVBoxLayout)
    , titleLabel(new Label(text, rowTitle))
{
    setMinimumHeight(height);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Minimum);
    line->setContentsMargins(groupPadding, textMargin, groupPadding, textMargin);
    line->setSpacing(0);
    texts->setSpacing(0);
    texts->addStretch();
    texts->addWidget(titleLabel);
    texts->addStretch();
    line->addLayout(texts, 1);
}

void Row::setSymbol(SymbolView* symbol, int gap)
{
    line->insertWidget(0, symbol);
    line->insertSpacing(1, gap);
}

void Row::setSubtitle(Label* label) { texts->insertWidget(2, label); }

void Row::add(QWidget* control, int gapBefore)
{
    line->addSpacing(gapBefore);
    // What gives way takes all that the title leaves.
    const bool givesWay = control->sizePolicy().expandingDirections().testFlag(Qt::Horizontal);
    line->addWidget(control, givesWay ? 100 : 0, Qt::AlignVCenter);
}

void Row::setSwitch(Switch* control)
{
    toggle = control;
    add(control);
}

void Row::mouseReleaseEvent(QMouseEvent* event)
{
    if (toggle && event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()))
        toggle->click();
}

Group::Group(QWidget* parent)
    : QWidget(parent)
    , rows(new QVBoxLayout(this))
{
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Minimum);
}

void Group::add(QWidget* row) { rows->addWidget(row); }

Row& Group::addRow(const QString& title, int height)
{
    auto* row = new Row(title, height);
    add(row);
    return *row;
}

void Group::paintEvent(QPaintEvent*)
{
    const auto& theme = Theme::of(palette());
    QPainter painter(this);
    const double pixel = ControlPainting::hairline(painter);
    ControlPainting::box(QRectF(rect()), Theme::groupRadius, theme.card, theme.hair, pixel, painter);
    for (int index = 1; index < rows->count(); ++index) {
        const double top = rows->itemAt(index)->geometry().top();
        painter.fillRect(QRectF(groupPadding, top, width() - groupPadding - pixel, pixel), theme.hair);
    }
}

} // namespace pintalux::Form
