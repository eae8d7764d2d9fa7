// SPDX-License-Identifier: MIT
#include "controls/Slider.h"
#include "controls/theme/ArrowGlyph.h"
#include "controls/theme/ControlPainting.h"
#include "platform/graphics/Draw.h"
#include "platform/graphics/Symbol.h"
#include "render/Renderer.h"
#include "settings/Settings.h"
#include "settings/preferences/ColorPicker.h"
#include "settings/preferences/PreferencesRows.h"

#include <QPainter>

#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

namespace pintalux::Preferences {

namespace {

constexpr QSize arrowSize(30, 22);
constexpr QSize dockSize(18, 18);
constexpr QSize chipSize(26, 16);
constexpr double chipRadius = 4;
constexpr double checkerCell = 4;
constexpr int strokeSliderWidth = 190;
constexpr int strokeValueWidth = 40;

PopUpButton::Preview arrowPreview(ArrowStyle style)
{
    return [style](QPainter& painter, const QRectF& rect, const QColor& ink) {
        // The glyph has a clear margin for its place in a bar of tools.
        drawArrowGlyph(style, rect.adjusted(-7, -7, 7, 7), ink, painter);
    };
}

PopUpButton::Preview dockPreview(PaletteEdge edge)
{
    return [name = u"dock."_s + rawValue(edge)](QPainter& painter, const QRectF& rect, const QColor& ink) {
        Symbol::draw(name, rect, ink, painter);
    };
}

/// `index` is one of the palette's, or −1 for no background.
PopUpButton::Preview gradientPreview(int index)
{
    return [index](QPainter& painter, const QRectF& rect, const QColor&) {
        GraphicsContext context(painter);
        const GraphicsContext::Saved saved(context);
        const auto chip = Draw::roundedRect(rect, chipRadius);
        context.clip(chip);
        if (index < 0)
            ControlPainting::checkerboard(rect, checkerCell, painter);
        else
            Renderer::drawGradient(Palette::gradients()[index], rect, context);
        context.stroke(chip, {Theme::current().hair, 1});
    };
}

/// Values that follow the hand are written once, between the two signals of `control`.
template <typename Control, typename Begin, typename End>
void writeOnce(Settings& settings, Control* control, Begin begin, End end)
{
    const auto hold = std::make_shared<std::optional<Settings::Hold>>();
    QObject::connect(control, begin, control, [&settings, hold] { hold->emplace(settings); });
    QObject::connect(control, end, control, [hold] { hold->reset(); });
}

void addColorRow(Form::Group& group, Binding& binding)
{
    auto* picker = new ColorPicker;
    group.addRow(u"Color"_s).add(picker);
    auto& settings = binding.settings;
    QObject::connect(picker, &ColorPicker::chosen, picker,
        [&settings](const QColor& color) { settings.setLastColor(color); });
    writeOnce(settings, picker, &ColorPicker::dialogOpened, &ColorPicker::dialogClosed);
    binding.follow(Setting::lastColor, [picker, &settings] { picker->setColor(settings.lastColor()); });
}

void addStrokeRow(Form::Group& group, Binding& binding)
{
    auto* slider = new Slider(u"Grosor"_s, thinnestStroke, thickestStroke);
    slider->setFixedWidth(strokeSliderWidth);
    auto* value = new Form::Label({}, Form::value, Form::Label::Fit::shortened);
    value->setFixedWidth(strokeValueWidth);
    auto& row = group.addRow(u"Grosor"_s);
    row.add(slider);
    row.add(value, 0);
    auto& settings = binding.settings;
    QObject::connect(slider, &QAbstractSlider::valueChanged, slider,
        [&settings](int width) { settings.setStrokeWidth(width); });
    writeOnce(settings, slider, &QAbstractSlider::sliderPressed, &QAbstractSlider::sliderReleased);
    binding.follow(Setting::strokeWidth, [slider, value, &settings] {
        const double width = settings.strokeWidth();
        const QSignalBlocker quiet(slider); // a width between two steps stays as it is stored
        slider->setValue(int(std::lround(std::clamp<double>(width, thinnestStroke, thickestStroke))));
        slider->update();
        value->show(QString::number(width, 'f', 0) + u" pt"_s);
    });
}

void addGradientRow(Form::Group& group, Binding& binding)
{
    auto* list = new PopUpButton(u"Fondo"_s);
    QList<PopUpButton::Choice> choices;
    for (const auto& gradient : Palette::gradients())
        choices << PopUpButton::Choice{gradient.name, gradientPreview(gradient.id)};
    choices << PopUpButton::Choice{u"Sin fondo"_s, gradientPreview(-1)};
    list->setChoices(choices, chipSize);
    group.addRow(u"Fondo"_s).add(list);
    const int none = list->count() - 1;
    auto& settings = binding.settings;
    QObject::connect(list, &PopUpButton::chosen, list,
        [&settings, none](int index) { settings.setLastGradient(index == none ? -1 : index); });
    binding.follow(Setting::lastGradient, [&settings, list, none] {
        // Whatever is no gradient of the palette gives no background.
        const int index = settings.lastGradient();
        list->setCurrentIndex(index >= 0 && index < none ? index : none);
    });
}

} // namespace

QWidget* makeEditorGroup(Binding& binding)
{
    auto* group = new Form::Group;
    addChoice<ArrowStyle>(*group,
        {.title = u"Estilo de flecha",
            .setting = Setting::arrowStyle,
            .get = &Settings::arrowStyle,
            .set = &Settings::setArrowStyle,
            .previewSize = arrowSize,
            .preview = arrowPreview},
        binding);
    addSwitch(*group,
        {u"Letra manuscrita en los textos", Setting::handwritten, &Settings::handwritten,
            &Settings::setHandwritten},
        binding);
    addSwitch(*group,
        {u"Textos tipo llamada (bocadillo con puntero)", Setting::calloutText, &Settings::calloutText,
            &Settings::setCalloutText},
        binding);
    addChoice<PaletteEdge>(*group,
        {.title = u"Posición de la paleta",
            .setting = Setting::paletteEdge,
            .get = &Settings::paletteEdge,
            .set = &Settings::setPaletteEdge,
            .previewSize = dockSize,
            .preview = dockPreview},
        binding);
    addSwitch(*group,
        {u"Mostrar la paleta al abrir el editor", Setting::toolbarHidden, &Settings::toolbarHidden,
            &Settings::setToolbarHidden, true},
        binding);
    addSwitch(*group,
        {u"Embellecer las capturas nuevas", Setting::beautifyByDefault, &Settings::beautifyByDefault,
            &Settings::setBeautifyByDefault},
        binding);
    addColorRow(*group, binding);
    addStrokeRow(*group, binding);
    addGradientRow(*group, binding);
    return group;
}

} // namespace pintalux::Preferences
