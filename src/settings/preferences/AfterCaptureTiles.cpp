// SPDX-License-Identifier: MIT
#include "settings/preferences/AfterCaptureTiles.h"

#include "controls/theme/ControlPainting.h"
#include "controls/theme/Fade.h"
#include "controls/theme/FocusRing.h"
#include "platform/graphics/Color.h"
#include "platform/graphics/Draw.h"
#include "platform/graphics/Geometry.h"
#include "platform/graphics/GraphicsContext.h"
#include "platform/graphics/Symbol.h"
#include "render/Renderer.h"

#include <QAbstractButton>
#include <QBoxLayout>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

constexpr double ringGap = 3;
constexpr double ringWidth = 2;
constexpr double ringReach = ringGap + ringWidth; ///< of the chosen tile's ring around its picture
constexpr double pictureHeight = 92;
constexpr double pictureRadius = 10;
constexpr double radioTop = ringReach + pictureHeight + 12;
constexpr double radioSize = 16;
constexpr double labelTop = radioTop + radioSize + 8;
constexpr double labelLine = 16;
constexpr int tileGap = 4;
constexpr int sideMargin = 9;
/// The pictures are drawn for this width and stay in its middle where they have more.
constexpr double drawnWidth = 159;

QLinearGradient diagonal(const QRectF& rect, const QColor& from, const QColor& to)
{
    QLinearGradient gradient(rect.topLeft(), rect.bottomRight());
    gradient.setColorAt(0, from);
    gradient.setColorAt(1, to);
    return gradient;
}

/// A sheet of the little scenes, with a shadow beneath it.
void sheet(GraphicsContext& context, const QRectF& rect, double radius, const QBrush& fill, double blur = 10)
{
    const GraphicsContext::Saved saved(context);
    const double scale = context.deviceScale();
    context.setShadow({withAlpha(Qt::black, 0.22), {0, blur * 0.3 * scale}, blur * scale});
    context.fill(Draw::roundedRect(rect, radius), fill);
}

void drawEditorScene(GraphicsContext& context, const Theme& theme)
{
    const QRectF window(22, 15, 115, 65);
    sheet(context, window, 6, theme.canvas, 12);
    {
        const GraphicsContext::Saved saved(context);
        context.clip(Draw::roundedRect(window, 6));
        context.fill(QRectF(22, 15, 115, 8.5), theme.dark ? theme.card : QColor(Qt::white));
        context.fill(QRectF(22, 23.5, 115, 0.5), theme.hair);
    }
    const QRectF button(117, 18, 16, 4);
    context.fill(Draw::roundedRect(button, 2), Theme::brandGradient(button));
    sheet(context, {42, 29, 75, 36}, 0, theme.dark ? QColor(0x3C, 0x3A, 0x45) : QColor(Qt::white), 4);
    const std::array<QPointF, 3> arrow{QPointF(62.5, 56), QPointF(76, 50.5), QPointF(90, 38.5)};
    if (const auto path = Renderer::arrowPath(arrow, 4))
        context.fill(*path, Palette::annotation().front().color);
    sheet(context, {48, 68, 62, 8}, 4, theme.card, 3);
    context.fill(Draw::ellipse({68, 70, 4, 4}), theme.brand);
}

void drawThumbnailScene(GraphicsContext& context, const Theme& theme)
{
    sheet(context, {95, 41, 54, 42}, 6, theme.card);
    const QRectF picture(98, 44, 48, 27);
    context.fill(
        Draw::roundedRect(picture, 4), diagonal(picture, QColor(0x12, 0x8C, 0x7E), QColor(0x62, 0xC9, 0xB5)));
    for (const double x : {101.0, 117.0, 132.0})
        context.fill(Draw::roundedRect({x, 75, 12, 4}, 2), theme.track);
}

void drawMessageScene(GraphicsContext& context, const Theme& theme)
{
    const QColor capsule = theme.dark ? QColor(0x1B, 0x1A, 0x22) : QColor(0x2A, 0x28, 0x33);
    sheet(context, {43, 60, 74, 18}, 9, capsule, 6);
    const QRectF disc(50.5, 64.5, 9, 9);
    context.fill(Draw::ellipse(disc), diagonal(disc, Palette::chalkWhite, Palette::chalkYellow));
    Symbol::draw(u"checkmark", expanded(disc, -1), capsule, context);
    context.fill(Draw::roundedRect({66, 67.7, 44, 2.6}, 1.3), withAlpha(Qt::white, 0.8));
}

class Tile : public QAbstractButton {
public:
    Tile(AfterCapture shownChoice, QWidget* parent)
        : QAbstractButton(parent)
        , choice(shownChoice)
        , chosen(this, Theme::toggleMilliseconds, Theme::toggleMilliseconds, QEasingCurve::OutCubic)
        , hover(this)
    {
        setText(title(choice));
        setCheckable(true);
        setAutoExclusive(true);
        setFocusPolicy(Qt::TabFocus);
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        setMinimumHeight(int(labelTop + 2 * labelLine));
        auto* ring = new FocusRing(this, radioSize / 2);
        ring->setShape([this] { return radio(); });
        connect(this, &QAbstractButton::toggled, this, [this](bool on) { chosen.setOn(on); });
    }

    QSize sizeHint() const override { return {int(drawnWidth + 2 * ringReach), minimumHeight()}; }

protected:
    void paintEvent(QPaintEvent*) override
    {
        const auto& theme = Theme::of(palette());
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        paintPicture(theme, painter);
        paintRadio(theme, painter);
        paintLabel(theme, painter);
    }

private:
    QRectF picture() const { return {ringReach, ringReach, width() - 2 * ringReach, pictureHeight}; }
    QRectF radio() const { return {(width() - radioSize) / 2, radioTop, radioSize, radioSize}; }

    void paintPicture(const Theme& theme, QPainter& painter) const
    {
        const auto rect = picture();
        GraphicsContext context(painter);
        {
            const GraphicsContext::Saved saved(context);
            context.fill(Draw::roundedRect(rect, pictureRadius),
                theme.dark ? diagonal(rect, QColor(0x33, 0x40, 0x6B), QColor(0x4B, 0x3A, 0x66))
                           : diagonal(rect, QColor(0xCF, 0xD8, 0xF3), QColor(0xE7, 0xD8, 0xF2)));
            context.translate(rect.topLeft() + QPointF((rect.width() - drawnWidth) / 2, 0));
            switch (choice) {
            case AfterCapture::editor:
                drawEditorScene(context, theme);
                break;
            case AfterCapture::thumbnail:
                drawThumbnailScene(context, theme);
                break;
            case AfterCapture::copyOnly:
                drawMessageScene(context, theme);
                break;
            }
        }
        ControlPainting::hoverFill(rect, pictureRadius, hover.amount(), isDown(), theme, painter);
        if (chosen.amount() <= 0)
            return;
        const double reach = ringGap + ringWidth / 2;
        context.stroke(Draw::roundedRect(expanded(rect, reach), pictureRadius + reach),
            {withAlpha(theme.brand, chosen.amount()), ringWidth});
    }

    void paintRadio(const Theme& theme, QPainter& painter) const
    {
        constexpr double dot = 6;
        const auto disc = radio();
        painter.setPen(QPen(theme.off, 1.5));
        painter.setBrush(Qt::NoBrush);
        painter.drawEllipse(expanded(disc, -0.75));
        painter.setOpacity(chosen.amount());
        painter.fillPath(Draw::ellipse(disc), Theme::brandGradient(disc));
        painter.fillPath(Draw::ellipse(expanded(disc, (dot - radioSize) / 2)), QColor(Qt::white));
        painter.setOpacity(1);
    }

    void paintLabel(const Theme& theme, QPainter& painter) const
    {
        const auto font = Draw::systemFont(12, FontWeight::medium);
        const auto color = isChecked() ? theme.text : theme.text2;
        QRectF line(0, labelTop, width(), labelLine);
        for (const auto& part : ControlPainting::wrapped(text(), font, width() - 2 * ringReach)) {
            ControlPainting::text(part, font, color, line, Qt::AlignHCenter, painter);
            line.translate(0, labelLine);
        }
    }

    AfterCapture choice;
    Fade chosen;
    HoverFade hover;
};

} // namespace

AfterCaptureTiles::AfterCaptureTiles(QWidget* parent)
    : QWidget(parent)
{
    setAccessibleName(u"Después de capturar"_s);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(sideMargin, sideMargin, sideMargin, 14);
    row->setSpacing(tileGap);
    for (const auto choice : allCases<AfterCapture>()) {
        auto* tile = new Tile(choice, this);
        connect(tile, &QAbstractButton::clicked, this, [this, choice] { Q_EMIT chosen(choice); });
        row->addWidget(tile, 1);
        tiles << tile;
    }
}

void AfterCaptureTiles::setChoice(AfterCapture choice) { tiles[qsizetype(choice)]->setChecked(true); }

} // namespace pintalux
