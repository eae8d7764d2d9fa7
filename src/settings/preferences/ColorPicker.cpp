// SPDX-License-Identifier: MIT
#include "settings/preferences/ColorPicker.h"

#include "controls/PushButton.h"
#include "controls/theme/ControlPainting.h"
#include "controls/theme/Fade.h"
#include "controls/theme/FocusRing.h"
#include "model/Palette.h"
#include "platform/graphics/Color.h"

#include <QBoxLayout>
#include <QColorDialog>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

constexpr QSize cell(26, 28);
constexpr int cellGap = 1;
constexpr double discSize = 18;
constexpr double hoveredDiscSize = 20;
constexpr int ruleHeight = 18;

class SwatchButton : public QAbstractButton {
public:
    SwatchButton(const Palette::Swatch& swatch, QWidget* parent)
        : QAbstractButton(parent)
        , color(swatch.color)
        , chosen(this, Theme::toggleMilliseconds, Theme::toggleMilliseconds, QEasingCurve::OutCubic)
        , hover(this)
    {
        setCheckable(true);
        setAutoExclusive(true);
        setAccessibleName(swatch.name);
        setToolTip(swatch.name);
        setFocusPolicy(Qt::TabFocus);
        setFixedSize(cell);
        auto* ring = new FocusRing(this, discSize / 2 + 4);
        ring->setShape([] {
            const QSizeF size(discSize + 8, discSize + 8);
            return QRectF(QPointF(cell.width() - size.width(), cell.height() - size.height()) / 2, size);
        });
        connect(this, &QAbstractButton::toggled, this, [this](bool on) { chosen.setOn(on); });
    }

    const QColor color;

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        const double diameter
            = isChecked() ? discSize : discSize + hover.amount() * (hoveredDiscSize - discSize);
        ControlPainting::swatch(
            QRectF(rect()).center(), diameter, color, chosen.amount(), Theme::of(palette()), painter);
    }

private:
    Fade chosen;
    HoverFade hover;
};

class Rule : public QWidget {
public:
    explicit Rule(QWidget* parent)
        : QWidget(parent)
    {
        setFixedSize(1, ruleHeight);
    }

protected:
    void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(rect(), Theme::of(palette()).hair); }
};

} // namespace

ColorPicker::ColorPicker(QWidget* parent)
    : QWidget(parent)
    , other(new PushButton(u"Otro color"_s, PushButton::Kind::bordered, this))
{
    setAccessibleName(u"Color"_s);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(cellGap);
    for (const auto& swatch : Palette::annotation()) {
        auto* button = new SwatchButton(swatch, this);
        connect(button, &QAbstractButton::clicked, this, [this, button] { Q_EMIT chosen(button->color); });
        row->addWidget(button);
        swatches << button;
    }
    row->addSpacing(8);
    row->addWidget(new Rule(this));
    row->addSpacing(11);
    other->setPicture([this](QPainter& painter, const QRectF& rect, const QColor&) {
        constexpr double chooserSize = 20;
        painter.save();
        painter.translate(rect.center());
        painter.scale(rect.width() / chooserSize, rect.height() / chooserSize);
        ControlPainting::colorChooser({0, 0}, current, Theme::of(palette()), painter);
        painter.restore();
    });
    connect(other, &QAbstractButton::clicked, this, &ColorPicker::askForColor);
    row->addWidget(other);
}

void ColorPicker::setColor(const QColor& color)
{
    current = color;
    for (qsizetype index = 0; index < swatches.size(); ++index) {
        auto* swatch = swatches[index];
        const bool same = Palette::annotation()[index].id == hexString(color);
        // The toolkit leaves no group without a checked button; a colour of one's own is none of them.
        swatch->setAutoExclusive(false);
        swatch->setChecked(same);
        swatch->setAutoExclusive(true);
    }
    other->update();
}

void ColorPicker::askForColor()
{
    auto* dialog = new QColorDialog(current, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(u"Otro color"_s);
    const auto before = current;
    connect(dialog, &QColorDialog::currentColorChanged, this, &ColorPicker::chosen);
    connect(dialog, &QDialog::rejected, this, [this, before] { Q_EMIT chosen(before); });
    connect(dialog, &QDialog::finished, this, &ColorPicker::dialogClosed);
    Q_EMIT dialogOpened();
    dialog->open();
}

} // namespace pintalux
