// SPDX-License-Identifier: MIT
#include "editor/bars/InstrumentView.h"

#include "controls/theme/Theme.h"
#include "editor/bars/InstrumentDrawing.h"
#include "editor/bars/ToolButton.h"
#include "platform/graphics/Color.h"
#include "platform/graphics/Draw.h"
#include "platform/graphics/Geometry.h"
#include "platform/graphics/GraphicsContext.h"

#include <QPainter>

namespace pintalux {

namespace {

// Points.
constexpr double topAtRest = 13;
constexpr double topHovered = 9;
constexpr double topChosen = 3;
constexpr double shadowSpace = 4; ///< around the box, in the kept picture
constexpr double columnRadius = 9;
constexpr double columnTop = 3;
constexpr double columnSide = 1;

} // namespace

InstrumentView::InstrumentView(Tool tool, QWidget* parent)
    : ChromeButton(ToolButton::helpOf(tool), Theme::toolRadius, parent)
    , drawnTool(tool)
    , rising(this, Theme::instrumentMilliseconds, Theme::instrumentMilliseconds, Theme::slideCurve())
{
    connect(this, &QAbstractButton::toggled, this, [this](bool chosen) { rising.setOn(chosen); });
}

void InstrumentView::setTint(const QColor& color)
{
    tint = color;
    drawn = {};
    update();
}

void InstrumentView::setTray(const QRectF& rect) { tray = rect; }

const QImage& InstrumentView::picture()
{
    const double ratio = devicePixelRatioF();
    if (drawn.isNull() || drawn.devicePixelRatio() != ratio || drawnDark != theme().dark) {
        const QSizeF size(
            InstrumentDrawing::width + 2 * shadowSpace, InstrumentDrawing::height + shadowSpace);
        drawn = QImage((size * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
        drawn.fill(Qt::transparent);
        drawn.setDevicePixelRatio(ratio);
        QPainter painter(&drawn);
        GraphicsContext context(painter);
        context.translate({shadowSpace, shadowSpace});
        InstrumentDrawing::draw(drawnTool, tint, theme().dark, context);
        drawnDark = theme().dark;
    }
    return drawn;
}

void InstrumentView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setClipPath(Draw::roundedRect(tray.translated(-pos()), Theme::trayRadius));
    if (markedAmount() > 0) {
        const auto column = QRectF(rect()).adjusted(columnSide, columnTop, -columnSide, columnRadius);
        painter.fillPath(Draw::roundedRect(column, columnRadius), faded(theme().selected, markedAmount()));
    }
    const double hovered = std::lerp(topAtRest, topHovered, hoverAmount());
    const double top = std::lerp(hovered, topChosen, rising.amount());
    const double left = (width() - InstrumentDrawing::width) / 2;
    painter.drawImage(QPointF(left - shadowSpace, top - shadowSpace), picture());
}

} // namespace pintalux
