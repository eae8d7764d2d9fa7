// SPDX-License-Identifier: MIT
#include "editor/bars/ToolPalette.h"

#include "controls/ChromeButton.h"
#include "controls/theme/ControlPainting.h"
#include "controls/theme/Theme.h"
#include "editor/bars/InstrumentView.h"
#include "editor/bars/PalettePositionMenu.h"
#include "editor/bars/ToolButton.h"
#include "editor/style/KeyboardGroup.h"
#include "platform/graphics/Color.h"
#include "platform/graphics/Draw.h"
#include "platform/graphics/GraphicsContext.h"
#include "platform/graphics/Symbol.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QMouseEvent>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

constexpr std::array instrumentTools{Tool::pen, Tool::highlighter, Tool::eraser};
constexpr std::array shapeTools{Tool::select, Tool::arrow, Tool::line, Tool::rectangle, Tool::ellipse,
    Tool::text, Tool::step, Tool::blur, Tool::crop};

// Points.
constexpr int compactBelow = 990; ///< width of the parent
constexpr int acrossHeight = 60;
constexpr int uprightWidth = 116;
constexpr int padding = 8; ///< of the upright palette
constexpr int endPadding = 10;
constexpr int gripBefore = 4;
constexpr int gripAcross = 18;
constexpr int gripUpright = 20;
constexpr int gripSymbol = 16;
constexpr QSize trayAcross{116, 48};
constexpr QSize trayUpright{100, 48};
constexpr int instrumentWidth = 36;
constexpr int instrumentWidthUpright = 32;
constexpr int ruleGap = 8;
constexpr int ruleLength = 30;
constexpr int ruleInset = 4;
constexpr QSize toolAcross{36, 36};
constexpr QSize toolUpright{32, 34};
constexpr int toolGap = 2;
constexpr int uprightColumns = 3;

constexpr QColor glowColor{0x6E, 0x46, 0xF0};

} // namespace

/// The six dots at the palette's start: dragging them moves the palette. By keyboard they open the menu of
/// positions.
class ToolPalette::Grip : public ChromeButton {
public:
    explicit Grip(ToolPalette* moved)
        : ChromeButton(
            u"Arrastra para mover la paleta (abajo, arriba o a los lados)"_s, Theme::chipRadius, moved)
        , card(*moved)
    {
        setCursor(Qt::OpenHandCursor);
        connect(this, &QAbstractButton::clicked, this,
            [this] { card.openPositionMenu(mapToGlobal(rect().bottomLeft())); });
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.translate(QRectF(rect()).center());
        if (width() > height())
            painter.rotate(90);
        const QRectF place(-gripSymbol / 2.0, -gripSymbol / 2.0, gripSymbol, gripSymbol);
        Symbol::draw(u"grip", place, mixed(theme().disabled, theme().icon, hoverAmount()), painter);
    }

    void mousePressEvent(QMouseEvent* event) override
    {
        if (event->button() != Qt::LeftButton)
            return;
        pressed = event->globalPosition().toPoint();
        start = card.pos();
        dragging = false;
        setCursor(Qt::ClosedHandCursor);
    }

    void mouseMoveEvent(QMouseEvent* event) override
    {
        if (!pressed)
            return;
        const auto dragOffset = event->globalPosition().toPoint() - *pressed;
        dragging = dragging || dragOffset.manhattanLength() >= QApplication::startDragDistance();
        if (dragging)
            card.move(start + dragOffset);
    }

    void mouseReleaseEvent(QMouseEvent* event) override
    {
        if (event->button() != Qt::LeftButton || !pressed)
            return;
        pressed.reset();
        setCursor(Qt::OpenHandCursor);
        if (!std::exchange(dragging, false))
            return;
        card.snapToMouse();
        // The palette glides away from the pointer, which the toolkit notices with the next move only.
        QEvent leave(QEvent::Leave);
        QApplication::sendEvent(this, &leave);
    }

    void contextMenuEvent(QContextMenuEvent* event) override { card.openPositionMenu(event->globalPos()); }

private:
    ToolPalette& card;
    std::optional<QPoint> pressed; ///< screen point
    QPoint start;
    bool dragging = false;
};

ToolPalette::ToolPalette(EditorModel& edited, std::function<void()> snap, QWidget* parent)
    : FloatingCard(Theme::paletteRadius, parent)
    , model(edited)
    , snapToMouse(std::move(snap))
    , grip(new Grip(this))
{
    const auto choosing = [this](Tool tool) { return [this, tool] { model.setTool(tool); }; };
    for (const auto tool : instrumentTools) {
        auto* view = new InstrumentView(tool, this);
        connect(view, &QAbstractButton::clicked, this, choosing(tool));
        instruments << view;
    }
    for (const auto tool : shapeTools) {
        auto* button = new ToolButton(tool, this);
        connect(button, &QAbstractButton::clicked, this, choosing(tool));
        shapes << button;
    }
    sections = new ToolSections(model, this);
    new KeyboardGroup(*this, 1);
    if (parent)
        parent->installEventFilter(this);
    connect(&model, &EditorModel::changed, this, &ToolPalette::refresh);
    refresh(EditorModel::Field::tool);
    refresh(EditorModel::Field::color);
    resize(ToolPalette::sizeHint());
    arrange();
}

ToolSections::Arrangement ToolPalette::arrangement() const
{
    using Arrangement = ToolSections::Arrangement;
    if (isVertical(model.paletteEdge()))
        return Arrangement::upright;
    return parentWidget() && parentWidget()->width() < compactBelow ? Arrangement::compact
                                                                    : Arrangement::wide;
}

QSize ToolPalette::sizeHint() const
{
    const auto options = ToolSections::sizeFor(arrangement());
    const int rule = 2 * ruleGap + 1;
    if (arrangement() == ToolSections::Arrangement::upright) {
        const int tools = 3 * toolUpright.height() + 2 * toolGap;
        return {uprightWidth,
            gripUpright + trayUpright.height() + rule + tools + rule + options.height() + padding};
    }
    const int count = int(shapeTools.size());
    const int tools = count * toolAcross.width() + (count - 1) * toolGap;
    return {gripBefore + gripAcross + trayAcross.width() + rule + tools + rule + options.width() + endPadding,
        acrossHeight};
}

void ToolPalette::arrange()
{
    rules.clear();
    if (arrangement() == ToolSections::Arrangement::upright)
        arrangeUpright();
    else
        arrangeAcross();
    for (auto* view : instruments)
        view->setTray(tray);
    update();
}

void ToolPalette::arrangeAcross()
{
    const auto centered
        = [](int x, QSize size) { return QRect(QPoint(x, (acrossHeight - size.height()) / 2), size); };
    int x = gripBefore;
    const auto addRule = [&] {
        rules << QRectF(x + ruleGap, (acrossHeight - ruleLength) / 2.0, 1, ruleLength);
        x += 2 * ruleGap + 1;
    };
    grip->setGeometry(centered(x, {gripAcross, trayAcross.height()}));
    x += gripAcross;
    tray = centered(x, trayAcross);
    int slot = x + (trayAcross.width() - int(instruments.size()) * instrumentWidth) / 2;
    for (auto* view : instruments) {
        view->setGeometry(slot, tray.top(), instrumentWidth, tray.height());
        slot += instrumentWidth;
    }
    x += trayAcross.width();
    addRule();
    for (auto* button : shapes) {
        button->setGeometry(centered(x, toolAcross));
        x += toolAcross.width() + toolGap;
    }
    x -= toolGap;
    addRule();
    sections->arrange(arrangement(), {{x, 0}, ToolSections::sizeFor(arrangement())});
}

void ToolPalette::arrangeUpright()
{
    int y = 0;
    const auto addRule = [&] {
        rules << QRectF(padding + ruleInset, y + ruleGap, uprightWidth - 2 * (padding + ruleInset), 1);
        y += 2 * ruleGap + 1;
    };
    grip->setGeometry(padding, 0, uprightWidth - 2 * padding, gripUpright);
    y += gripUpright;
    tray = QRect(QPoint(padding, y), trayUpright);
    int slot = padding + (trayUpright.width() - int(instruments.size()) * instrumentWidthUpright) / 2;
    for (auto* view : instruments) {
        view->setGeometry(slot, y, instrumentWidthUpright, tray.height());
        slot += instrumentWidthUpright;
    }
    y += trayUpright.height();
    addRule();
    for (int i = 0; i < int(shapes.size()); ++i)
        shapes[i]->setGeometry(QRect(QPoint(padding + i % uprightColumns * (toolUpright.width() + toolGap),
                                         y + i / uprightColumns * (toolUpright.height() + toolGap)),
            toolUpright));
    y += 3 * toolUpright.height() + 2 * toolGap;
    addRule();
    sections->arrange(arrangement(), {{padding, y}, ToolSections::sizeFor(arrangement())});
}

void ToolPalette::refresh(EditorModel::Field field)
{
    using Field = EditorModel::Field;
    if (field == Field::tool) {
        for (auto* view : instruments)
            view->setMarked(view->tool() == model.tool());
        for (auto* button : shapes)
            button->setMarked(button->tool() == model.tool());
        update();
    } else if (field == Field::color) {
        for (auto* view : instruments)
            view->setTint(model.color());
    } else if (field == Field::paletteEdge) {
        arrange();
        updateGeometry();
    }
}

void ToolPalette::openPositionMenu(QPoint screenPoint)
{
    auto* menu = new PalettePositionMenu(model, this);
    connect(menu, &QMenu::aboutToHide, menu, &QObject::deleteLater);
    menu->popUpAt(screenPoint);
}

bool ToolPalette::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == parent() && event->type() == QEvent::Resize && size() != sizeHint())
        updateGeometry();
    return FloatingCard::eventFilter(watched, event);
}

void ToolPalette::resizeEvent(QResizeEvent* event)
{
    FloatingCard::resizeEvent(event);
    arrange();
}

void ToolPalette::paintEvent(QPaintEvent* event)
{
    FloatingCard::paintEvent(event);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const auto& theme = Theme::of(palette());
    ControlPainting::box(
        tray, Theme::trayRadius, theme.well, theme.hair, ControlPainting::hairline(painter), painter);
    for (const auto& rule : rules)
        painter.fillRect(rule, theme.hair);
    GraphicsContext context(painter);
    for (const auto* button : shapes) {
        if (!button->isMarked())
            continue;
        const GraphicsContext::Saved saved(context);
        const double scale = context.deviceScale();
        context.setShadow({withAlpha(glowColor, 0.38), {0, 2 * scale}, 6 * scale});
        context.fill(Draw::roundedRect(button->geometry(), Theme::toolRadius), theme.card);
    }
}

} // namespace pintalux
