// SPDX-License-Identifier: MIT
#include "editor/window/MainMenu.h"

#include "controls/Menu.h"
#include "controls/theme/Theme.h"
#include "platform/desktop/KeyLabel.h"
#include "platform/graphics/Draw.h"
#include "platform/graphics/Symbol.h"
#include "platform/graphics/TextBlock.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QProxyStyle>
#include <QStyleOptionMenuItem>

using namespace Qt::StringLiterals;

namespace pintalux::MainMenu {

namespace {

struct Row {
    QStringView menu;
    std::optional<Command> command; ///< none for a separator
};

constexpr QStringView applicationMenu = u"Pintalux";

constexpr std::array<Row, 25> table{{
    {applicationMenu, Command::showAbout},
    {applicationMenu, std::nullopt},
    {applicationMenu, Command::showPreferences},
    {applicationMenu, std::nullopt},
    {applicationMenu, Command::hide},
    {applicationMenu, Command::terminate},
    {u"Archivo", Command::openImage},
    {u"Archivo", Command::saveAs},
    {u"Archivo", Command::quickSave},
    {u"Archivo", Command::insertImage},
    {u"Archivo", std::nullopt},
    {u"Archivo", Command::close},
    {u"Edición", Command::undo},
    {u"Edición", Command::redo},
    {u"Edición", std::nullopt},
    {u"Edición", Command::cut},
    {u"Edición", Command::copy},
    {u"Edición", Command::paste},
    {u"Edición", Command::selectAll},
    {u"Edición", std::nullopt},
    {u"Edición", Command::duplicate},
    {u"Edición", Command::bringForward},
    {u"Edición", Command::sendBackward},
    {u"Edición", Command::deleteMark},
    {u"Ventana", Command::minimize},
}};

// Points.
constexpr int barPadding = 6;
constexpr int titleHeight = 22;
constexpr int titleSides = 9;
constexpr double titleRadius = 6;
constexpr int aboveTitle = (barHeight - titleHeight) / 2;

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
    void keyPressEvent(QKeyEvent* event) override
    {
        if (event->key() != Qt::Key_Escape)
            return Menu::keyPressEvent(event);
        // The toolkit would keep the keyboard in the bar, also for who opened the menu with the mouse.
        close();
        QKeyEvent leave(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QCoreApplication::sendEvent(&bar, &leave);
    }
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
            if (const auto command = commandOf(*row); command && !symbol(*command).isEmpty())
                row->setIcon(Symbol::icon(symbol(*command), {theme.icon, theme.disabled, Qt::white}));
    }

    QMenuBar& bar;
};

/// A combination as it is written, ⌘ being Ctrl here.
QKeySequence keySequence(QStringView written)
{
    auto portable = written.toString();
    portable.replace(u'⌘', u"Ctrl+"_s).replace(u'⇧', u"Shift+"_s);
    portable.replace(u'↑', u"Up"_s).replace(u'↓', u"Down"_s);
    return QKeySequence::fromString(portable, QKeySequence::PortableText);
}

/// The keys that a row answers to: none for one of the canvas's own.
QList<QKeySequence> shortcutsOf(const CommandRow& row)
{
    QList<QKeySequence> keys;
    for (const auto written : {row.key, row.otherKey})
        if (written.contains(u'⌘'))
            keys.append(keySequence(written));
    return keys;
}

/// A row that carries out the command and shows its key.
QAction& addRow(QMenu& menu, Command command, const RunCommand& run)
{
    const auto& row = enumRow(command);
    auto* action = menu.addAction(row.title.toString());
    action->setData(int(command));
    action->setMenuRole(QAction::NoRole);
    const auto keys = shortcutsOf(row);
    if (!row.key.isEmpty())
        Menu::setKeyText(
            *action, keys.isEmpty() ? KeyLabel::text(row.key.toString()) : KeyLabel::text(keys.first()));
    QObject::connect(action, &QAction::triggered, &menu, [run, command] { run(command); });
    return *action;
}

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

std::unique_ptr<QMenuBar> make(const RunCommand& run, QWidget* parent)
{
    auto bar = std::make_unique<Bar>(parent);
    for (const auto& [title, command] : table) {
        auto& menu = menuTitled(title, *bar);
        if (command)
            addRow(menu, *command, run).setShortcuts(shortcutsOf(enumRow(*command)));
        else
            menu.addSeparator();
    }
    return bar;
}

Menu* makeMarkMenu(const EditorModel& model, const RunCommand& run, QWidget* parent)
{
    auto* menu = new Menu(parent);
    for (const auto command : {Command::duplicate, Command::bringForward, Command::sendBackward})
        addRow(*menu, command, run).setEnabled(isPossible(command, model));
    menu->addSeparator();
    addRow(*menu, Command::deleteMark, run).setEnabled(isPossible(Command::deleteMark, model));
    QObject::connect(menu, &QMenu::aboutToHide, menu, &QObject::deleteLater);
    return menu;
}

std::optional<Command> commandOf(const QAction& action)
{
    const auto data = action.data();
    return data.isValid() ? std::optional(Command(data.toInt())) : std::nullopt;
}

} // namespace pintalux::MainMenu
