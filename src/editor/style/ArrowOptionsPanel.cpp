// SPDX-License-Identifier: MIT
#include "editor/style/ArrowOptionsPanel.h"

#include "controls/BarButton.h"
#include "controls/theme/ControlPainting.h"
#include "controls/theme/Theme.h"
#include "editor/style/ArrowStyleIcon.h"
#include "editor/style/ColorChooser.h"
#include "editor/style/KeyboardGroup.h"
#include "editor/style/StyleButtons.h"
#include "editor/style/WedgeSlider.h"
#include "platform/graphics/Draw.h"

#include <QLocale>
#include <QPainter>

#include <cmath>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

// Points, from the left end.
constexpr QSize whole{567, 52};
constexpr QRect firstStyle(8, 8, 44, 36);
constexpr int stylePitch = 46;
constexpr std::array<int, 2> rules{244, 478};
constexpr int ruleLength = 26;
constexpr QRect widthLabel(257, 0, 42, 52);
constexpr QPoint wedgeCorner(306, 14);
constexpr QRect widthPlace(440, 0, 28, 52);
constexpr QRect colorPlace(487, 10, 40, 32);
constexpr QRect closePlace(529, 10, 30, 32);

/// A width in points as it is written here: "4", "5,5".
QString widthText(double points)
{
    return QLocale(QLocale::Spanish).toString(std::round(points * 10) / 10, 'g', 3);
}

} // namespace

ArrowOptionsPanel::ArrowOptionsPanel(EditorModel& edited, QWidget* parent)
    : FloatingCard(Theme::optionsRadius, parent)
    , model(edited)
    , gesture(edited)
{
    makeStyles();
    makeWidth();
    makeColor();
    auto* close
        = new BarButton(u"chevron.left"_s, u"Cerrar opciones de flecha"_s, this, {.size = closePlace.size()});
    close->move(closePlace.topLeft());
    connect(close, &QAbstractButton::clicked, this, [this] { model.setShowArrowOptions(false); });

    new KeyboardGroup(*this, 2);
    connect(&model, &EditorModel::shownStyleChanged, this, &ArrowOptionsPanel::refresh);
    refresh();
    resize(whole);
}

QSize ArrowOptionsPanel::sizeHint() const { return whole; }

void ArrowOptionsPanel::makeStyles()
{
    for (const auto& row : arrowStyleTable) {
        auto* icon = new ArrowStyleIcon(row.value, this);
        icon->setGeometry(firstStyle.translated(int(styles.size()) * stylePitch, 0));
        connect(icon, &QAbstractButton::clicked, this,
            [this, style = row.value] { StyleActions::chooseArrowStyle(model, style); });
        styles << icon;
    }
}

void ArrowOptionsPanel::makeWidth()
{
    wedge = new WedgeSlider(u"Grosor"_s, EditorModel::strokeRange, this);
    wedge->move(wedgeCorner);
    connect(wedge, &QAbstractSlider::sliderPressed, this, [this] { gesture.begin(); });
    connect(wedge, &QAbstractSlider::sliderReleased, this, [this] { gesture.end(); });
    connect(wedge, &WedgeSlider::pointsChanged, this, [this](double points) {
        if (gesture.isRunning())
            gesture.change(points);
        else
            StyleActions::chooseWidth(model, points);
    });
}

void ArrowOptionsPanel::makeColor()
{
    color = new DropColorButton(u"Color de la flecha"_s, this);
    color->setGeometry(colorPlace);
    connect(color, &QAbstractButton::clicked, this, [this] { ColorChooser::open(model, *color, this); });
}

void ArrowOptionsPanel::refresh()
{
    const auto style = model.shownStyle();
    for (auto* icon : styles)
        icon->setMarked(icon->style() == style.arrowStyle);
    wedge->setPoints(style.strokeWidth);
    color->setColor(style.color);
    if (const auto text = widthText(style.strokeWidth); text != writtenWidth) {
        writtenWidth = text;
        update(widthPlace);
    }
}

void ArrowOptionsPanel::paintEvent(QPaintEvent* event)
{
    FloatingCard::paintEvent(event);
    QPainter painter(this);
    const auto& theme = Theme::of(palette());
    for (const int x : rules)
        painter.fillRect(QRectF(x, (height() - ruleLength) / 2.0, 1, ruleLength), theme.hair);
    ControlPainting::text(u"Grosor"_s, Draw::systemFont(12, FontWeight::medium), theme.text2, widthLabel,
        Qt::AlignLeft, painter);
    ControlPainting::text(writtenWidth, Draw::systemFont(12, FontWeight::semibold), theme.text, widthPlace,
        Qt::AlignRight, painter);
}

} // namespace pintalux
