// SPDX-License-Identifier: MIT
#include "controls/Menu.h"

#include "controls/theme/Theme.h"
#include "platform/graphics/Draw.h"
#include "platform/graphics/Symbol.h"
#include "platform/graphics/TextBlock.h"

#include <QGuiApplication>
#include <QMenuBar>
#include <QMouseEvent>
#include <QProxyStyle>
#include <QScreen>
#include <QStyleOptionMenuItem>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

// Points.
constexpr int padding = 6;
constexpr int rowHeight = 28;
constexpr int smallRowHeight = 22;
constexpr int separatorHeight = 11;
constexpr int separatorInset = 8;
constexpr int sidePadding = 10;
constexpr int iconSize = 17;
constexpr int iconGap = 9;
constexpr int keyGap = 16;
constexpr int noteWidth = 280;
constexpr int shadowSpace = 40;
constexpr int besideGap = 4;

constexpr char lookProperty[] = "pintaluxMenuRow";
constexpr char keyProperty[] = "pintaluxMenuKey";
constexpr char pictureProperty[] = "pintaluxMenuPicture";
constexpr char pictureSizeProperty[] = "pintaluxMenuPictureSize";

struct Type {
    double size;
    FontWeight weight;
};

Type typeOf(Menu::Look look)
{
    switch (look) {
    case Menu::Look::header:
        return {13, FontWeight::semibold};
    case Menu::Look::section:
        return {11, FontWeight::semibold};
    case Menu::Look::note:
    case Menu::Look::credit:
        return {11, FontWeight::regular};
    case Menu::Look::link:
        return {11, FontWeight::medium};
    case Menu::Look::action:
        break;
    }
    return {13, FontWeight::regular};
}

Menu::Look lookOf(const QStyleOptionMenuItem& option)
{
    return Menu::Look(option.styleObject ? option.styleObject->property(lookProperty).toInt() : 0);
}

/// Null where the row has no picture.
QSize pictureSizeOf(const QStyleOptionMenuItem& option)
{
    return option.styleObject ? option.styleObject->property(pictureSizeProperty).toSize() : QSize(0, 0);
}

/// Where a row's text begins: beyond the column of icons and check marks, in a menu that has one.
int textLeft(const QStyleOptionMenuItem& option)
{
    const bool hasColumn = option.maxIconWidth > 0 || option.menuHasCheckableItems;
    return sidePadding + (hasColumn ? iconSize + iconGap : 0);
}

TextBlock textOf(const QString& text, Menu::Look look, const QColor& color)
{
    const auto [size, weight] = typeOf(look);
    return {text, {Draw::systemFont(size, weight), color},
        look == Menu::Look::note ? std::optional<double>(noteWidth) : std::nullopt};
}

QString withoutMnemonic(const QString& text)
{
    auto plain = text;
    return plain.replace(u"&&"_s, u"\x01"_s).remove(u'&').replace(u'\x01', u'&');
}

struct Texts {
    QString title;
    QString key;
};

Texts textsOf(const QStyleOptionMenuItem& option)
{
    const auto tab = option.text.indexOf(u'\t');
    return {withoutMnemonic(tab < 0 ? option.text : option.text.left(tab)),
        tab < 0 ? QString() : option.text.mid(tab + 1)};
}

QColor textColor(const QStyleOptionMenuItem& option, Menu::Look look, bool highlighted, const Theme& theme)
{
    if (look == Menu::Look::link)
        return highlighted ? QColor(Qt::white) : theme.onSelected;
    if (look == Menu::Look::credit || look == Menu::Look::note || look == Menu::Look::section)
        return theme.text2;
    if (look == Menu::Look::header)
        return theme.text;
    if (!(option.state & QStyle::State_Enabled))
        return theme.disabled;
    return highlighted ? QColor(Qt::white) : theme.text;
}

void drawCentered(const TextBlock& block, double left, const QRectF& row, QPainter& painter)
{
    block.draw(painter, {left, row.center().y() - block.size().height() / 2});
}

/// Where a menu of a menu bar hangs from; global logical pixels.
std::optional<QPoint> titleInBar(const QMenu& menu)
{
    const auto* bar = qobject_cast<QMenuBar*>(menu.parentWidget());
    return bar ? std::optional(bar->mapToGlobal(bar->actionGeometry(menu.menuAction()).bottomLeft()))
               : std::nullopt;
}

} // namespace

/// Sizes and paints the rows for the toolkit's menu.
class Menu::Style : public QProxyStyle {
public:
    Style()
        : QProxyStyle(u"fusion"_s)
    {
    }

    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override
    {
        switch (metric) {
        case PM_MenuHMargin:
        case PM_MenuVMargin:
            return padding + shadowSpace;
        case PM_MenuPanelWidth:
        case PM_MenuDesktopFrameWidth:
        case PM_MenuTearoffHeight:
        case PM_SubMenuOverlap:
            return 0;
        default:
            return QProxyStyle::pixelMetric(metric, option, widget);
        }
    }

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
        QStyleHintReturn* data) const override
    {
        // The menu's own shape is set where it is shown.
        if (hint == SH_Menu_Mask)
            return 0;
        return QProxyStyle::styleHint(hint, option, widget, data);
    }

    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
        const QWidget* widget) const override
    {
        const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
        if (type != CT_MenuItem || !item)
            return QProxyStyle::sizeFromContents(type, option, size, widget);
        if (item->menuItemType == QStyleOptionMenuItem::Separator)
            return {1, separatorHeight};
        const auto look = lookOf(*item);
        const auto [title, key] = textsOf(*item);
        const auto text = textOf(title, look, Qt::black).size();
        double width = textLeft(*item) + text.width() + sidePadding;
        if (!key.isEmpty())
            width += keyGap + textOf(key, Look::action, Qt::black).size().width();
        if (const auto picture = pictureSizeOf(*item); !picture.isEmpty())
            width += keyGap + picture.width();
        int height = look == Look::credit || look == Look::link ? smallRowHeight : rowHeight;
        if (look == Look::note)
            height = int(std::ceil(text.height())) + 8;
        return {int(std::ceil(width)), height};
    }

    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
        const QWidget* widget) const override
    {
        const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
        if (element == CE_MenuItem && item)
            drawRow(*item, *painter);
        else if (element != CE_MenuEmptyArea)
            QProxyStyle::drawControl(element, option, painter, widget);
    }

private:
    static void drawRow(const QStyleOptionMenuItem& item, QPainter& painter)
    {
        const auto& theme = Theme::of(item.palette);
        const QRectF row(item.rect);
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        if (item.menuItemType == QStyleOptionMenuItem::Separator) {
            const double y = std::floor(row.center().y());
            painter.fillRect(
                QRectF(row.left() + separatorInset, y, row.width() - 2 * separatorInset, 1), theme.hair);
            painter.restore();
            return;
        }
        const bool enabled = item.state & State_Enabled;
        const bool highlighted = enabled && (item.state & State_Selected);
        if (highlighted)
            painter.fillPath(Draw::roundedRect(row, Theme::menuRowRadius), theme.brand);
        drawIcon(item, row, highlighted, painter);
        const auto look = lookOf(item);
        const auto [title, key] = textsOf(item);
        drawCentered(textOf(title, look, textColor(item, look, highlighted, theme)),
            row.left() + (look == Look::section ? sidePadding : textLeft(item)), row, painter);
        if (!key.isEmpty()) {
            const auto keyBlock = textOf(key, Look::action,
                highlighted   ? QColor(Qt::white)
                    : enabled ? theme.text2
                              : theme.disabled);
            drawCentered(keyBlock, row.right() - sidePadding - keyBlock.size().width(), row, painter);
        }
        drawPicture(item, row, highlighted, painter);
        painter.restore();
    }

    static void drawPicture(
        const QStyleOptionMenuItem& item, const QRectF& row, bool highlighted, QPainter& painter)
    {
        const auto size = pictureSizeOf(item);
        if (size.isEmpty())
            return;
        const QRect place(QPoint(int(row.right()) - sidePadding - size.width(),
                              int(std::lround(row.center().y() - size.height() / 2.0))),
            size);
        item.styleObject->property(pictureProperty)
            .value<QIcon>()
            .paint(&painter, place, Qt::AlignCenter, highlighted ? QIcon::Active : QIcon::Normal);
    }

    static void drawIcon(
        const QStyleOptionMenuItem& item, const QRectF& row, bool highlighted, QPainter& painter)
    {
        const QRect place(int(row.left()) + sidePadding, int(std::lround(row.center().y() - iconSize / 2.0)),
            iconSize, iconSize);
        const bool enabled = item.state & State_Enabled;
        if (!item.icon.isNull())
            item.icon.paint(&painter, place, Qt::AlignCenter,
                highlighted                                   ? QIcon::Active
                    : enabled || lookOf(item) != Look::action ? QIcon::Normal
                                                              : QIcon::Disabled);
        else if (item.checkType != QStyleOptionMenuItem::NotCheckable && item.checked)
            Symbol::draw(
                u"checkmark", place, highlighted ? QColor(Qt::white) : Theme::of(item.palette).icon, painter);
    }
};

Menu::Menu(QWidget* parent)
    : QMenu(parent)
    , sheet(*this, WindowRole::popup, {.radius = Theme::menuRadius, .margin = shadowSpace})
    , rowStyle(std::make_unique<Style>())
{
    setStyle(rowStyle.get());
    setToolTipsVisible(true);
}

Menu::~Menu() { setStyle(nullptr); }

void Menu::setLook(QAction& action, Look look) { action.setProperty(lookProperty, int(look)); }

void Menu::setPicture(QAction& action, const QIcon& picture, QSize size)
{
    action.setProperty(pictureProperty, picture);
    action.setProperty(pictureSizeProperty, size);
}

void Menu::setKeyText(QAction& action, const QString& text)
{
    action.setProperty(keyProperty, text);
    action.setShortcutVisibleInContextMenu(false); // else the toolkit leaves room for both
}

void Menu::setCardWidth(int width) { setMinimumWidth(width + 2 * shadowSpace); }

void Menu::popUpAt(QPoint screenPoint)
{
    anchor = screenPoint;
    popup(screenPoint);
}

void Menu::popUpBeside(const QRect& screenRect)
{
    beside = screenRect;
    popup(screenRect.bottomLeft());
}

/// Where the window goes so that its card lies beside the rectangle.
QPoint Menu::placeBeside(const QRect& screenRect) const
{
    const auto* on = QGuiApplication::screenAt(screenRect.center());
    const auto visible = WindowSystem::current().visibleFrame(*(on ? on : screen()));
    const auto inside = sheet.rect();
    const int below = screenRect.y() + screenRect.height() + besideGap;
    const int above = screenRect.y() - besideGap - inside.height();
    const bool fitsBelow = below + inside.height() <= visible.y() + visible.height();
    const int rightmost = visible.x() + visible.width() - inside.width();
    const QPoint place(std::max(visible.x(), std::min(screenRect.x(), rightmost)),
        fitsBelow || above < visible.y() ? below : above);
    return place - inside.topLeft();
}

/// Where the window goes so that its card hangs from the point, or stands on it where there is no room below.
QPoint Menu::placeAt(QPoint screenPoint) const
{
    const auto* on = QGuiApplication::screenAt(screenPoint);
    const int least = int(Theme::screenMargin);
    const auto visible
        = WindowSystem::current().visibleFrame(*(on ? on : screen())).adjusted(least, least, -least, -least);
    const auto inside = sheet.rect();
    const int rightmost = visible.x() + visible.width() - inside.width();
    const int lowest = visible.y() + visible.height() - inside.height();
    const int above = screenPoint.y() - inside.height();
    const bool isAbove = screenPoint.y() > lowest && above >= visible.y();
    const QPoint place(
        std::min(screenPoint.x(), rightmost), std::min(isAbove ? above : screenPoint.y(), lowest));
    return QPoint(std::max(visible.x(), place.x()), std::max(visible.y(), place.y())) - inside.topLeft();
}

void Menu::initStyleOption(QStyleOptionMenuItem* option, const QAction* action) const
{
    QMenu::initStyleOption(option, action);
    const auto title = action->text().section(u'\t', 0, 0);
    const auto key = action->property(keyProperty);
    if (key.isValid())
        option->text = key.toString().isEmpty() ? title : title + u'\t' + key.toString();
    // The style finds the row's look where it is kept.
    option->styleObject = const_cast<QAction*>(action);
}

void Menu::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    painter.setClipRegion(event->region());
    sheet.paint(Elevation::Level::popover, Theme::of(palette()).card, painter);
    for (auto* action : actions()) {
        QStyleOptionMenuItem option;
        initStyleOption(&option, action);
        option.rect = actionGeometry(action);
        if (action->isVisible() && event->rect().intersects(option.rect))
            style()->drawControl(QStyle::CE_MenuItem, &option, &painter, this);
    }
}

void Menu::showEvent(QShowEvent* event)
{
    // The toolkit has placed the window with the space for its shadow; it is the card within that counts.
    if (beside)
        move(placeBeside(*beside));
    else
        move(placeAt(anchor.value_or(titleInBar(*this).value_or(QCursor::pos()))));
    QMenu::showEvent(event);
}

void Menu::hideEvent(QHideEvent* event)
{
    anchor.reset();
    beside.reset();
    QMenu::hideEvent(event);
}

void Menu::mousePressEvent(QMouseEvent* event)
{
    if (rect().contains(event->position().toPoint()) && !sheet.rect().contains(event->position().toPoint()))
        close(); // on the shadow is beside the menu
    else
        QMenu::mousePressEvent(event);
}

void Menu::mouseMoveEvent(QMouseEvent* event)
{
    QMenu::mouseMoveEvent(event);
    const auto* action = actionAt(event->position().toPoint());
    const bool link = action && Look(action->property(lookProperty).toInt()) == Look::link;
    setCursor(link ? Qt::PointingHandCursor : Qt::ArrowCursor);
}

} // namespace pintalux
