// SPDX-License-Identifier: MIT
#include "editor/style/BlurPicker.h"

#include "controls/ChromeButton.h"
#include "controls/theme/ControlPainting.h"
#include "controls/theme/Elevation.h"
#include "controls/theme/Theme.h"
#include "editor/state/StyleActions.h"
#include "platform/graphics/Color.h"
#include "platform/graphics/Draw.h"
#include "platform/graphics/Geometry.h"
#include "platform/graphics/Symbol.h"

#include <QPainter>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

// Points.
constexpr int inset = 3;
constexpr double symbolSize = 18;
constexpr double segmentRadius = Theme::toolRadius - inset;

QStringView symbolOf(BlurStyle style)
{
    switch (style) {
    case BlurStyle::pixelate:
        return u"checkerboard.rectangle";
    case BlurStyle::blur:
        break;
    }
    return u"blur";
}

} // namespace

/// One way. Its name is for assistive technology; the tool tip is that of the whole picker.
class BlurPicker::Segment : public ChromeButton {
public:
    Segment(BlurStyle offered, QWidget* parent)
        : ChromeButton(title(offered), segmentRadius, parent)
        , style(offered)
    {
        setToolTip({});
    }

    const BlurStyle style;

protected:
    /// The ring has to find room in the picker.
    QRectF focusShape() const override { return expanded(rect(), -1); }

    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QRectF whole(rect());
        const auto path = Draw::roundedRect(whole, cornerRadius());
        const double chosen = markedAmount();
        if (chosen > 0)
            painter.fillPath(path, faded(theme().raised, chosen));
        if (chosen < 1)
            fillForPointer(painter, path);
        QRectF place(0, 0, symbolSize, symbolSize);
        place.moveCenter(whole.center());
        Symbol::draw(symbolOf(style), place, mixed(theme().icon, theme().onSelected, chosen), painter);
    }
};

BlurPicker::BlurPicker(EditorModel& model, QWidget* parent)
    : QWidget(parent)
{
    setToolTip(u"Difuminar / pixelar"_s);
    setAccessibleName(toolTip());
    for (const auto& row : blurStyleTable) {
        auto* segment = segments[std::size_t(row.value)] = new Segment(row.value, this);
        connect(segment, &QAbstractButton::clicked, this,
            [&model, style = row.value] { StyleActions::chooseBlurStyle(model, style); });
    }
    const auto follow = [this, &model] {
        for (auto* segment : segments)
            segment->setMarked(segment->style == model.shownStyle().blurStyle);
        update();
    };
    connect(&model, &EditorModel::shownStyleChanged, this, follow);
    follow();
}

void BlurPicker::resizeEvent(QResizeEvent*)
{
    const auto inner = rect().adjusted(inset, inset, -inset, -inset);
    const int half = inner.width() / 2;
    segments[0]->setGeometry(QRect(inner.left(), inner.top(), half, inner.height()));
    segments[1]->setGeometry(QRect(inner.right() + 1 - half, inner.top(), half, inner.height()));
}

void BlurPicker::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const auto& theme = Theme::of(palette());
    ControlPainting::box(
        rect(), Theme::toolRadius, theme.well, theme.hair, ControlPainting::hairline(painter), painter);
    for (const auto* segment : segments)
        if (segment->isMarked())
            Elevation::drawShadow(
                Elevation::Level::raised, segment->geometry(), segmentRadius, theme, painter);
}

} // namespace pintalux
