// SPDX-License-Identifier: MIT
#include "app/icon/BrandMark.h"

#include "model/Palette.h"
#include "platform/graphics/PathData.h"
#include "platform/graphics/VectorIcon.h"

#include <QLinearGradient>
#include <QPainter>

namespace pintalux::BrandMark {

namespace {

// In a square of 100.
constexpr double side = 100;
constexpr double radius = 26;
constexpr QStringView brackets = u"M22 39V22H39M61 22H78V39M78 61V78H61M39 78H22V61";
constexpr QStringView curve = u"M36 62C45 30 53 72 64 39";

class Engine : public VectorIcon {
public:
    void paint(QPainter* painter, const QRect& rect, QIcon::Mode, QIcon::State) override
    {
        draw(rect, *painter);
    }
    QIconEngine* clone() const override { return new Engine(*this); }
};

} // namespace

void draw(const QRectF& rect, QPainter& painter)
{
    const double scale = std::min(rect.width(), rect.height()) / side;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(rect.center() - QPointF(side, side) * scale / 2);
    painter.scale(scale, scale);
    QLinearGradient board(0, 0, side, side);
    const auto colors = Palette::gradients().constFirst().colors;
    for (qsizetype index = 0; index < colors.size(); ++index)
        board.setColorAt(double(index) / double(colors.size() - 1), colors[index]);
    painter.setPen(Qt::NoPen);
    painter.setBrush(board);
    painter.drawRoundedRect(QRectF(0, 0, side, side), radius, radius);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(Qt::white, 7.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(pathFromData(brackets));
    painter.setPen(QPen(Qt::white, 9, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(pathFromData(curve));
    painter.restore();
}

QIcon icon() { return QIcon(new Engine); }

} // namespace pintalux::BrandMark
