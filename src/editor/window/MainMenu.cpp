// SPDX-License-Identifier: MIT
#include "editor/window/MainMenu.h"

#include "controls/Menu.h"
#include "controls/theme/Theme.h"
#include "platform/desktop/KeyLabel.h"
#include "platform/graphics/Draw.h"
#include "platform/graphics/Symbol.h"
#include "platform/graphics/TextBlock.h"

#include <QCoreApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QProxyStyle>
#include <QStyleOptionMenuItem>

using namespace Qt::StringLiterals;

namespace pintalux::MainMenu {

namespace {

// Points.
constexpr int barPadding = 6;
constexpr int titleHeight = 22;
constexpr int titleSides = 9;
constexpr double titleRadius = 6;
constexpr int aboveTitle = (barHeight - titleHeight) / 2;

constexpr char symbolProperty[] = "pintaluxMenuSymbol";

TextBlock titleOf(const QStyleOptionMenuItem& item, const QColor& color)
{
    const auto weight = item.text == applicationMenu ? FontWeight::semibold : FontWeight::regular;
    return {item.text, {Draw::systemFont(13, weight), color}};
}

class BarStyle : public QProxyStyle {
public:
    BarStyle()
        : QProxyStyle(u"fusion"_s)
    {
    }

    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override
    {
        switch (metric) {
        case PM_MenuBarHMargin:
            return barPadding;
        case PM_MenuBarVMargin:
            return aboveTitle;
        case PM_MenuBarItemSpacing:
        case PM_MenuBarPanelWidth:
            return 0;
        default:
            return QProxyStyle::pixelMetric(metric, option, widget);
        }
    }

    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
        const QWidget* widget) const override
    {
        const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
        if (type != CT_MenuBarItem || !item)
            return QProxyStyle::sizeFromContents(type, option, size, widget);
        return {int(std::ceil(titleOf(*item, Qt::black).size().width())) + 2 * titleSides, titleHeight};
    }

    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
        const QWidget* widget) const override
    {
        const auto& theme = Theme::of(option->palette);
        const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
        if (element == CE_MenuBarEmptyArea)
            painter->fillRect(option->rect, theme.bar);
        else if (element == CE_MenuBarItem && item)
            drawTitle(*item, theme, *painter);
        else
            QProxyStyle::drawControl(element, option, painter, widget);
    }

private:
    static void drawTitle(const QStyleOptionMenuItem& item, const Theme& theme, QPainter& painter)
    {
        painter.fillRect(item.rect, theme.bar);
        painter.setRenderHint(QPainter::Antialiasing);
        if (item.state & State_Selected)
            painter.fillPath(Draw::roundedRect(item.rect, titleRadius),
                item.state & State_Sunken ? theme.press : theme.hover);
        const auto title = titleOf(item, theme.text);
        title.draw(painter, QRectF(item.rect).center() - QRectF({}, title.size()).center());
    }
};

class Bar : public QMenuBar {
public:
    explicit Bar(QWidget* parent)
        : QMenuBar(parent)
    {
        setStyle(&titles);
        setNativeMenuBar(false);
    }
    ~Bar() override { setStyle(nullptr); }

    QSize sizeHint() const override { return {QMenuBar::sizeHint().width(), barHeight}; }
    QSize minimumSizeHint() const override { return {0, barHeight}; }

private:
    BarStyle titles;
};

/// A menu that hangs from the bar. The space for its shadow lies over the bar, whose titles must stay within
/// the pointer's reach.
class HangingMenu : public Menu {
public:
    explicit HangingMenu(QMenuBar& from)
        : Menu(&from)
        , bar(from)
    {
        connect(this, &QMenu::aboutToShow, this, &HangingMenu::paintSymbols);
    }

protected:
    void mousePressEvent(QMouseEvent* event) override
    {
        if (!passedOn(*event))
            Menu::mousePressEvent(event);
    }
    void mouseMoveEvent(QMouseEvent* event) override
    {
        if (!passedOn(*event))
            Menu::mouseMoveEvent(event);
    }
    void mouseReleaseEvent(QMouseEvent* event) override
    {
        if (!passedOn(*event))
            Menu::mouseReleaseEvent(event);
    }

private:
    bool passedOn(const QMouseEvent& event)
    {
        const auto position = bar.mapFromGlobal(event.globalPosition());
        if (!bar.rect().contains(position.toPoint()))
            return false;
        QMouseEvent forBar(event.type(), position, event.globalPosition(), event.button(), event.buttons(),
            event.modifiers());
        QCoreApplication::sendEvent(&bar, &forBar);
        return true;
    }

    void paintSymbols()
    {
        const auto& theme = Theme::of(palette());
        for (auto* row : actions())
            if (const auto symbol = row->property(symbolProperty).toString(); !symbol.isEmpty())
                row->setIcon(Symbol::icon(symbol, {theme.icon, theme.disabled, Qt::white}));
    }

    QMenuBar& bar;
};

QMenu& menuTitled(QStringView title, QMenuBar& bar)
{
    for (auto* action : bar.actions())
        if (action->text() == title)
            return *action->menu();
    auto* menu = new HangingMenu(bar); // the bar's child
    menu->setTitle(title.toString());
    bar.addMenu(menu);
    return *menu;
}

} // namespace

std::unique_ptr<QMenuBar> make(const Trigger& trigger, QWidget* parent)
{
    auto bar = std::make_unique<Bar>(parent);
    for (const auto& row : table) {
        auto& menu = menuTitled(row.menu, *bar);
        if (row.title.isEmpty()) {
            menu.addSeparator();
            continue;
        }
        auto* action = menu.addAction(row.title.toString());
        const auto actionId = row.actionId.toString();
        action->setData(actionId);
        action->setMenuRole(QAction::NoRole);
        action->setProperty(symbolProperty, row.symbol.toString());
        if (!row.key.isEmpty()) {
            action->setShortcut(QKeySequence::fromString(row.key.toString(), QKeySequence::PortableText));
            Menu::setKeyText(*action, KeyLabel::text(action->shortcut()));
        }
        QObject::connect(action, &QAction::triggered, bar.get(),
            [trigger, actionId, target = row.target] { trigger(actionId, target); });
    }
    return bar;
}

} // namespace pintalux::MainMenu
