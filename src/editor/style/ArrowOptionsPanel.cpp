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

#include <QPainter>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

// Points, from the left end.
constexpr QSize whole{541, 52};
constexpr QRect firstStyle(8, 8, 44, 36);
constexpr int stylePitch = 46;
constexpr std::array<int, 2> rules{244, 452};
constexpr int ruleLength = 26;
constexpr QRect widthLabel(257, 0, 42, 52);
constexpr QPoint wedgeCorner(306, 14);
constexpr QRect colorPlace(461, 10, 40, 32);
constexpr QRect closePlace(503, 10, 30, 32);

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
    connect(&model, &EditorModel::changed, this, &ArrowOptionsPanel::refresh);
    using Field = EditorModel::Field;
    for (const auto field : {Field::arrowStyle, Field::strokeWidth, Field::color})
        refresh(field);
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

void ArrowOptionsPanel::refresh(EditorModel::Field field)
{
    using Field = EditorModel::Field;
    if (field == Field::arrowStyle)
        for (auto* icon : styles)
            icon->setMarked(icon->style() == model.arrowStyle());
    else if (field == Field::strokeWidth)
        wedge->setPoints(model.strokeWidth());
    else if (field == Field::color)
        color->setColor(model.color());
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
}

} // namespace pintalux
