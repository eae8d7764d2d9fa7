// SPDX-License-Identifier: MIT
#include "controls/PopUpButton.h"

#include "controls/Menu.h"
#include "controls/theme/ControlPainting.h"
#include "controls/theme/FocusRing.h"
#include "platform/graphics/Draw.h"
#include "platform/graphics/Symbol.h"
#include "platform/graphics/VectorIcon.h"

#include <QKeyEvent>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

constexpr int buttonHeight = 28;
constexpr double sidePadding = 12;
constexpr double previewGap = 6;
constexpr double arrowsSize = 16;
constexpr double arrowsInset = 7;
constexpr double titleGap = 6;

Font titleFont() { return Draw::systemFont(13, FontWeight::regular); }

/// A preview as an icon for the list.
class PreviewIcon : public VectorIcon {
public:
    PreviewIcon(PopUpButton::Preview painted, const QColor& ordinaryInk)
        : preview(std::move(painted))
        , ink(ordinaryInk)
    {
    }

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override
    {
        preview(*painter, rect, mode == QIcon::Active ? QColor(Qt::white) : ink);
    }
    QIconEngine* clone() const override { return new PreviewIcon(*this); }

private:
    PopUpButton::Preview preview;
    QColor ink;
};

} // namespace

PopUpButton::PopUpButton(const QString& accessibleTitle, QWidget* parent)
    : QAbstractButton(parent)
    , name(accessibleTitle)
    , hover(this)
{
    setAccessibleName(name);
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    new FocusRing(this, Theme::controlRadius);
    connect(this, &QAbstractButton::clicked, this, [this] { openList(); });
}

void PopUpButton::setChoices(const QList<Choice>& offered, QSize size)
{
    choices = offered;
    previewSize = size;
    updateGeometry();
    update();
}

QString PopUpButton::currentTitle() const { return choices.value(current).title; }

void PopUpButton::setCurrentIndex(int index)
{
    current = index >= 0 && index < choices.size() ? index : -1;
    setText(currentTitle());
    setAccessibleName(currentTitle().isEmpty() ? name : name + u": "_s + currentTitle());
    update();
}

void PopUpButton::setLeastWidth(int width)
{
    leastWidth = width;
    updateGeometry();
}

QSize PopUpButton::sizeHint() const
{
    double widest = 0;
    for (const auto& choice : choices)
        widest = std::max(widest,
            ControlPainting::textWidth(choice.title, titleFont())
                + (choice.preview ? previewSize.width() + previewGap : 0));
    const double needed = sidePadding + widest + titleGap + arrowsSize + arrowsInset;
    return {std::max(leastWidth, int(std::ceil(needed))), buttonHeight};
}

void PopUpButton::openList()
{
    const auto& theme = Theme::of(palette());
    auto* list = new Menu(this);
    list->setCardWidth(width());
    QAction* active = nullptr;
    for (int index = 0; index < choices.size(); ++index) {
        auto* action = list->addAction(choices[index].title);
        action->setCheckable(true);
        action->setChecked(index == current);
        if (index == current)
            active = action;
        if (choices[index].preview)
            Menu::setPicture(
                *action, QIcon(new PreviewIcon(choices[index].preview, theme.icon)), previewSize);
        connect(action, &QAction::triggered, this, [this, index] { Q_EMIT chosen(index); });
    }
    connect(list, &QMenu::aboutToHide, this, [this, list] {
        setDown(false);
        list->deleteLater();
    });
    setDown(true);
    list->popUpBeside({mapToGlobal(QPoint(0, 0)), size()});
    if (active)
        list->setActiveAction(active);
}

void PopUpButton::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Up:
    case Qt::Key_Down:
        click();
        break;
    default:
        QAbstractButton::keyPressEvent(event);
    }
}

void PopUpButton::paintEvent(QPaintEvent*)
{
    const auto& theme = Theme::of(palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF shape(rect());
    if (!isEnabled())
        painter.setOpacity(Theme::disabledOpacity);
    ControlPainting::box(shape, Theme::controlRadius, theme.buttonFill(), theme.buttonBorder(), 1, painter);
    ControlPainting::hoverFill(shape, Theme::controlRadius, hover.amount(), isDown(), theme, painter);

    double left = sidePadding;
    if (const auto preview = choices.value(current).preview) {
        const QRectF place(
            QPointF(left, std::round(shape.center().y() - previewSize.height() / 2.0)), QSizeF(previewSize));
        preview(painter, place, theme.text);
        left = place.right() + previewGap;
    }
    const double right = shape.right() - arrowsInset - arrowsSize;
    ControlPainting::text(currentTitle(), titleFont(), theme.text,
        {left, 0, right - titleGap - left, shape.height()}, Qt::AlignLeft, painter);
    Symbol::draw(
        u"popup", {right, shape.center().y() - arrowsSize / 2, arrowsSize, arrowsSize}, theme.icon, painter);
}

} // namespace pintalux
