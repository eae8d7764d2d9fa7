// SPDX-License-Identifier: MIT
#include "ChromeStage.h"
#include "controls/Slider.h"
#include "controls/TextField.h"
#include "controls/theme/FocusRing.h"
#include "editor/style/ArrowStyleIcon.h"
#include "editor/style/BeautifyPanel.h"
#include "editor/style/ColorChooser.h"
#include "editor/style/GradientSwatch.h"
#include "editor/style/KeyboardGroup.h"
#include "editor/style/WedgeSlider.h"

namespace {

struct ChromePanels : ChromeStage {
    WedgeSlider& wedge() { return *options.findChild<WedgeSlider*>(); }

    static QAbstractButton* named(const QWidget& panel, const QString& name)
    {
        for (auto* found : panel.findChildren<QAbstractButton*>())
            if (found->accessibleName() == name)
                return found;
        return nullptr;
    }
};

} // namespace

TEST_F(ChromePanels, ArrowStylesRestyleInOneStep)
{
    select(Kind::arrow);
    auto steps = model.undoCount();
    for (const auto& row : arrowStyleTable) {
        click(row.title.toString());
        EXPECT_EQ(model.arrowStyle(), row.value);
        EXPECT_EQ(model.selected()->arrowStyle, row.value);
        EXPECT_EQ(model.undoCount(), ++steps);
        for (const auto* icon : options.findChildren<ArrowStyleIcon*>())
            EXPECT_EQ(icon->isMarked(), icon->style() == row.value);
    }
    click(u"Cerrar opciones de flecha"_s);
    EXPECT_FALSE(model.showArrowOptions());
}

TEST_F(ChromePanels, DraggingTheWedgeIsOneUndoStep)
{
    model.setStrokeWidth(4);
    select(Kind::arrow);
    const auto before = model.doc();
    const auto at = [this](double x) { return wedge().mapTo(&window, QPointF(x, 12)); };
    QList<double> seen;
    const auto watching = QObject::connect(&wedge(), &WedgeSlider::pointsChanged, &wedge(), [&] {
        seen << model.strokeWidth();
        EXPECT_EQ(model.selected()->lineWidth, model.lineWidth());
        EXPECT_EQ(model.undoCount(), 1) << "while the knob moves nothing is recorded";
    });
    drag(wedge(), {66, 12}, {at(70), at(70.5), at(90), at(500)});
    QObject::disconnect(watching);
    EXPECT_GE(seen.size(), 4);
    EXPECT_TRUE(
        std::any_of(seen.begin(), seen.end(), [](double width) { return width != std::round(width); }));
    EXPECT_EQ(model.strokeWidth(), 20);
    EXPECT_EQ(model.undoCount(), 2);
    model.undo();
    EXPECT_EQ(model.doc(), before);

    drag(wedge(), {20, 12}, {at(30)});
    EXPECT_EQ(model.undoCount(), 1) << "nothing is selected";
    model.setStrokeWidth(7);
    EXPECT_EQ(wedge().points(), 7);
    press(wedge(), Qt::Key_Right);
    EXPECT_EQ(model.strokeWidth(), 8);
    wedge().setValue(3); // as assistive technology does
    EXPECT_EQ(model.strokeWidth(), 3);
}

TEST_F(ChromePanels, ColoursAreChosenBySwatchAndByText)
{
    int dismissed = 0;
    ColorChooser chooser(model, [&] { ++dismissed; });
    chooser.show();
    auto& field = *chooser.findChild<TextField*>();
    select(Kind::rectangle);
    click(*named(chooser, u"Cielo"_s));
    EXPECT_EQ(model.selected()->color, QColor(0x3A, 0x86, 0xFF));
    EXPECT_EQ(field.text(), u"#3A86FF"_s);
    click(*named(chooser, u"Gris"_s));
    EXPECT_EQ(model.color(), QColor(0x14, 0x14, 0x14));
    EXPECT_EQ(model.undoCount(), 3);

    field.setText(u"#12345"_s);
    press(field, Qt::Key_Return);
    EXPECT_EQ(model.color(), QColor(0x14, 0x14, 0x14));
    EXPECT_TRUE(field.isWrong());
    field.setText(u" 2bd67b"_s);
    press(field, Qt::Key_Return);
    EXPECT_EQ(model.color(), QColor(0x2B, 0xD6, 0x7B));
    EXPECT_EQ(model.selected()->color, QColor(0x2B, 0xD6, 0x7B));
    EXPECT_FALSE(field.isWrong());
    EXPECT_TRUE(named(chooser, u"Menta"_s)->isChecked());
    model.setSelectedID({});
    model.setColor(Qt::red);
    EXPECT_EQ(field.text(), u"#FF0000"_s);
    EXPECT_TRUE(named(chooser, u"Otro color"_s));
    EXPECT_EQ(dismissed, 0);
}

TEST_F(ChromePanels, FramingFollowsItsControlsAndTheModel)
{
    BeautifyPanel panel(model);
    panel.show();
    EXPECT_FALSE(named(panel, u"Océano"_s)->isEnabled());
    click(*named(panel, u"Embellecer captura"_s));
    EXPECT_TRUE(model.beautify().enabled);
    click(*named(panel, u"Papel"_s));
    EXPECT_EQ(model.beautify().gradient, 9);
    click(*named(panel, u"Sin fondo (transparente)"_s));
    EXPECT_LT(model.beautify().gradient, 0);
    EXPECT_LT(settings.lastGradient(), 0);
    EXPECT_FALSE(named(panel, u"Papel"_s)->isChecked());

    const auto sliders = panel.findChildren<Slider*>();
    ASSERT_EQ(sliders.size(), 2);
    sliders[0]->setValue(80);
    sliders[1]->setValue(0);
    EXPECT_EQ(model.beautify().padding, 80);
    EXPECT_EQ(model.beautify().cornerRadius, 0);
    for (const auto& name :
        {u"Sombra suave"_s, u"Borde de luz"_s, u"Embellecer siempre las capturas nuevas"_s})
        click(*named(panel, name));
    EXPECT_FALSE(model.beautify().shadow || model.beautify().border);
    EXPECT_TRUE(settings.beautifyByDefault());

    auto frame = model.beautify();
    frame.padding = 33.4;
    frame.shadow = true;
    model.setBeautify(frame);
    EXPECT_EQ(model.beautify().padding, 33.4) << "showing a value must not round it";
    EXPECT_EQ(sliders[0]->value(), 33);
    EXPECT_TRUE(named(panel, u"Sombra suave"_s)->isChecked());
    EXPECT_EQ(model.undoCount(), 0);
}

// A panel that outlived its window would show, and change, a capture that is gone.
TEST_F(ChromePanels, APopoverGoesWithItsWindow)
{
    for (const auto& help : {u"Embellecer: fondo con degradado, esquinas y sombra"_s, u"Más colores"_s}) {
        click(help);
        const QPointer<QWidget> popover = QApplication::activePopupWidget();
        ASSERT_TRUE(popover) << qPrintable(help);
        window.hide();
        EXPECT_FALSE(popover->isVisible());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_FALSE(popover) << "each opening leaves one behind";
        window.show();
    }
}

TEST_F(ChromePanels, ClicksLeaveTheFocusWithTheCanvas)
{
    ASSERT_TRUE(canvas.hasFocus());
    for (const auto& help : {u"Menta"_s, u"Texto (T)"_s, u"Copiar al portapapeles (⌘C)"_s, u"Rellena"_s}) {
        click(help);
        EXPECT_TRUE(canvas.hasFocus()) << qPrintable(help);
    }
    for (const auto* control : window.findChildren<QAbstractButton*>())
        EXPECT_EQ(control->focusPolicy() & Qt::ClickFocus, 0) << qPrintable(control->accessibleName());
}

TEST_F(ChromePanels, TheKeyboardReachesEveryGroupAndControl)
{
    const auto group = [this] {
        const auto* focused = window.focusWidget();
        return bar.isAncestorOf(focused)    ? u"bar"_s
            : tools.isAncestorOf(focused)   ? u"palette"_s
            : options.isAncestorOf(focused) ? u"options"_s
                                            : u"canvas"_s;
    };
    const auto round = [&](bool forward) {
        QStringList seen;
        for (int i = 0; i < 4; ++i) {
            KeyboardGroup::walk(window, forward);
            seen << group();
        }
        return seen.join(u' ');
    };
    EXPECT_EQ(round(true), u"bar palette options canvas"_s);
    EXPECT_EQ(round(false), u"options palette bar canvas"_s);
    options.hide();
    KeyboardGroup::walk(window, false);

    // From the grip through the whole row, and back to where the group was left.
    QStringList reached;
    const QWidget* last = nullptr;
    while (window.focusWidget() != last) {
        last = window.focusWidget();
        reached << last->accessibleName();
        press(*window.focusWidget(), Qt::Key_Right);
    }
    EXPECT_EQ(reached.value(4), u"Seleccionar y mover (V)"_s);
    EXPECT_EQ(reached.constLast(), u"Grueso"_s);
    press(*window.focusWidget(), Qt::Key_Return);
    EXPECT_EQ(model.strokeWidth(), 7);
    press(*window.focusWidget(), Qt::Key_Escape);
    EXPECT_EQ(group(), u"canvas"_s);
    KeyboardGroup::walk(window, true);
    KeyboardGroup::walk(window, true);
    EXPECT_EQ(window.focusWidget()->accessibleName(), u"Grueso"_s);
}

TEST_F(ChromePanels, EveryControlTellsItsName)
{
    model.setPaletteEdge(PaletteEdge::left);
    BeautifyPanel framing(model);
    ColorChooser colors(model, [] {});
    for (const QWidget* surface :
        {static_cast<QWidget*>(&window), static_cast<QWidget*>(&framing), static_cast<QWidget*>(&colors)})
        for (const auto* control : surface->findChildren<QWidget*>())
            if (control->focusPolicy() & Qt::TabFocus && control != &canvas) {
                const auto* textual = qobject_cast<const QAbstractButton*>(control);
                EXPECT_FALSE(control->accessibleName().isEmpty() && (!textual || textual->text().isEmpty()))
                    << control->metaObject()->className();
            }
}
