// SPDX-License-Identifier: MIT
#include "editor/style/BeautifyPanel.h"

#include "controls/Slider.h"
#include "controls/Switch.h"
#include "controls/theme/ControlPainting.h"
#include "controls/theme/Theme.h"
#include "editor/style/GradientSwatch.h"
#include "platform/graphics/Draw.h"

#include <QPainter>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

// Points of the panel.
constexpr QSize whole{312, 358};
constexpr int side = 16;
constexpr int inner = 280;
constexpr QRectF titlePlace(side, 14, inner, 18);
constexpr QRectF subtitlePlace(side, 34, inner, 16);
constexpr QSize switchSize{34, 20};
constexpr int headerMiddle = 33;
constexpr int detailsTop = 62;

// Points of the part below the header.
constexpr int columns = 6;
constexpr QSize swatchSize{40, 30};
constexpr int swatchGap = 8;
constexpr int swatchTop = 35;
constexpr QRectF groundLabel(side, 11, inner, 16);
constexpr std::array<int, 2> sliderTops{113, 143};
constexpr int sliderRow = 30;
constexpr int labelWidth = 58;
constexpr int sliderGap = 12;
constexpr int valueWidth = 26;
constexpr std::array<int, 3> switchTops{177, 209, 254};
constexpr int switchRow = 32;
constexpr std::array<int, 2> lines{0, 247};

constexpr int mostPadding = 160;
constexpr int mostRadius = 40;

Font bodyFont(double size = 13) { return Draw::systemFont(size, FontWeight::regular); }

} // namespace

/// All that describes the frame.
class BeautifyPanel::Details : public QWidget {
public:
    Details(EditorModel& edited, QWidget* parent)
        : QWidget(parent)
        , model(edited)
    {
        addGradients();
        addSlider(0, u"Margen"_s, mostPadding, &BeautifySettings::padding);
        addSlider(1, u"Esquinas"_s, mostRadius, &BeautifySettings::cornerRadius);
        auto* shadow = addSwitch(0, u"Sombra suave"_s);
        connect(shadow, &QAbstractButton::clicked, this,
            [this](bool on) { change([on](BeautifySettings& frame) { frame.shadow = on; }); });
        auto* border = addSwitch(1, u"Borde de luz"_s);
        connect(border, &QAbstractButton::clicked, this,
            [this](bool on) { change([on](BeautifySettings& frame) { frame.border = on; }); });
        auto* always = addSwitch(2, u"Embellecer siempre las capturas nuevas"_s);
        connect(always, &QAbstractButton::clicked, this,
            [this](bool on) { model.preferences().setBeautifyByDefault(on); });
        connect(&model.preferences(), &Settings::changed, this, [this](Setting setting) {
            if (setting == Setting::beautifyByDefault)
                refresh();
        });
        refresh();
    }

    void refresh()
    {
        const auto& frame = model.beautify();
        const bool known = frame.gradient >= 0 && frame.gradient < int(Palette::gradients().size());
        for (auto* swatch : swatches)
            swatch->setMarked(swatch->index() == (known ? frame.gradient : -1));
        sliders[0]->setValue(int(std::lround(frame.padding)));
        sliders[1]->setValue(int(std::lround(frame.cornerRadius)));
        switches[0]->setChecked(frame.shadow);
        switches[1]->setChecked(frame.border);
        switches[2]->setChecked(model.preferences().beautifyByDefault());
        setEnabled(frame.enabled);
        update();
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        if (!isEnabled())
            painter.setOpacity(Theme::disabledOpacity);
        const auto& theme = Theme::of(palette());
        for (const int y : lines)
            painter.fillRect(QRectF(side, y, inner, 1), theme.hair);
        ControlPainting::text(u"Fondo"_s, Draw::systemFont(12, FontWeight::medium), theme.text2, groundLabel,
            Qt::AlignLeft, painter);
        for (std::size_t i = 0; i < sliders.size(); ++i) {
            const QRectF row(side, sliderTops[i], inner, sliderRow);
            ControlPainting::text(
                sliders[i]->accessibleName(), bodyFont(), theme.text, row, Qt::AlignLeft, painter);
            ControlPainting::text(QString::number(sliders[i]->value()),
                Draw::systemFont(12, FontWeight::medium), theme.text2, row, Qt::AlignRight, painter);
        }
        for (std::size_t i = 0; i < switches.size(); ++i)
            ControlPainting::text(switches[i]->accessibleName(), bodyFont(i == 2 ? 12 : 13), theme.text,
                QRectF(side, switchTops[i], inner - switchSize.width(), switchRow), Qt::AlignLeft, painter);
    }

private:
    void change(const std::function<void(BeautifySettings&)>& edit)
    {
        auto frame = model.beautify();
        edit(frame);
        model.setBeautify(frame);
    }

    void addGradients()
    {
        for (const auto& gradient : Palette::gradients())
            swatches << new GradientSwatch(gradient, gradient.name, this);
        swatches << new GradientSwatch({}, u"Sin fondo (transparente)"_s, this);
        for (int i = 0; i < int(swatches.size()); ++i) {
            const QPoint corner(side + i % columns * (swatchSize.width() + swatchGap),
                swatchTop + i / columns * (swatchSize.height() + swatchGap));
            constexpr int reach = GradientSwatch::reach;
            swatches[i]->setGeometry(QRect(corner, swatchSize).adjusted(-reach, -reach, reach, reach));
            connect(swatches[i], &QAbstractButton::clicked, this, [this, index = swatches[i]->index()] {
                change([&](BeautifySettings& frame) { frame.gradient = index; });
                model.preferences().setLastGradient(index);
            });
        }
    }

    void addSlider(std::size_t place, const QString& name, int most, double BeautifySettings::*field)
    {
        auto* slider = sliders[place] = new Slider(name, 0, most, this);
        const int left = side + labelWidth + sliderGap;
        const int width = inner - labelWidth - 2 * sliderGap - valueWidth;
        const int height = slider->sizeHint().height();
        slider->setGeometry(left, sliderTops[place] + (sliderRow - height) / 2, width, height);
        // What a person moves, not what follows the model: a margin between two whole points stays.
        connect(slider, &QSlider::valueChanged, this, [this, field](int value) {
            if (std::lround(model.beautify().*field) != value)
                change([&](BeautifySettings& frame) { frame.*field = value; });
        });
    }

    Switch* addSwitch(std::size_t place, const QString& name)
    {
        auto* added = switches[place] = new Switch(name, this);
        added->setGeometry(QRect(QPoint(side + inner - switchSize.width(),
                                     switchTops[place] + (switchRow - switchSize.height()) / 2),
            switchSize));
        return added;
    }

    EditorModel& model;
    QList<GradientSwatch*> swatches;
    std::array<Slider*, 2> sliders{};
    std::array<Switch*, 3> switches{};
};

BeautifyPanel::BeautifyPanel(EditorModel& edited, QWidget* parent)
    : QWidget(parent)
    , model(edited)
{
    setFixedSize(whole);
    enabled = new Switch(u"Embellecer captura"_s, this);
    enabled->setGeometry(
        QRect(QPoint(side + inner - switchSize.width(), headerMiddle - switchSize.height() / 2), switchSize));
    connect(enabled, &QAbstractButton::clicked, this, [this](bool on) {
        auto frame = model.beautify();
        frame.enabled = on;
        model.setBeautify(frame);
    });
    details = new Details(model, this);
    details->setGeometry(0, detailsTop, whole.width(), whole.height() - detailsTop);
    connect(&model, &EditorModel::changed, this, [this](EditorModel::Field field) {
        if (field == EditorModel::Field::beautify)
            refresh();
    });
    refresh();
}

QSize BeautifyPanel::sizeHint() const { return whole; }

void BeautifyPanel::refresh()
{
    enabled->setChecked(model.beautify().enabled);
    details->refresh();
}

void BeautifyPanel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const auto& theme = Theme::of(palette());
    ControlPainting::text(u"Embellecer captura"_s, Draw::systemFont(14, FontWeight::semibold), theme.text,
        titlePlace, Qt::AlignLeft, painter);
    ControlPainting::text(u"Fondo, margen, esquinas y sombra"_s, bodyFont(12), theme.text2, subtitlePlace,
        Qt::AlignLeft, painter);
}

} // namespace pintalux
