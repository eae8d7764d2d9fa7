// SPDX-License-Identifier: MIT
#include "Gestures.h"
#include "Pictures.h"
#include "controls/PopUpButton.h"
#include "controls/PushButton.h"
#include "controls/Slider.h"
#include "controls/Switch.h"
#include "controls/ToolTips.h"
#include "controls/theme/FocusRing.h"
#include "controls/theme/Theme.h"

namespace {

QAccessible::Role roleOf(QWidget& widget) { return QAccessible::queryAccessibleInterface(&widget)->role(); }

std::string nameOf(QWidget& widget)
{
    return QAccessible::queryAccessibleInterface(&widget)->text(QAccessible::Name).toStdString();
}

/// A window with controls side by side, with room around for what they paint outside of themselves.
class Stand : public QWidget {
public:
    explicit Stand(std::initializer_list<QWidget*> controls)
    {
        auto* row = new QHBoxLayout(this);
        row->setContentsMargins(20, 20, 20, 20);
        for (auto* control : controls)
            row->addWidget(control);
        gesture::present(*this);
    }

    QColor pixel(QPoint at) { return grab().toImage().pixelColor(at); }
};

} // namespace

TEST(Controls, AnswerToMouseAndKeyboardAlikeAndSayWhatTheyAre)
{
    auto* toggle = new Switch(u"Sonido"_s);
    auto* button = new PushButton(u"Elegir…"_s, PushButton::Kind::bordered);
    auto* off = new Switch(u"Nada"_s);
    off->setEnabled(false);
    const Stand stand({toggle, button, off});
    int clicks = 0;
    QObject::connect(button, &QAbstractButton::clicked, [&] { ++clicks; });

    gesture::click(*toggle, {2, 2});
    EXPECT_TRUE(toggle->isChecked()) << "the corners of the pill count";
    toggle->setFocus();
    for (const int key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
        const bool before = toggle->isChecked();
        gesture::key(key);
        EXPECT_NE(toggle->isChecked(), before) << key;
    }
    gesture::click(*off);
    EXPECT_FALSE(off->isChecked());

    gesture::click(*button);
    button->setFocus();
    gesture::key(Qt::Key_Return);
    gesture::key(Qt::Key_Space);
    EXPECT_EQ(clicks, 3);

    EXPECT_EQ(roleOf(*toggle), QAccessible::CheckBox);
    EXPECT_EQ(nameOf(*toggle), "Sonido");
    EXPECT_EQ(roleOf(*button), QAccessible::Button);
    EXPECT_EQ(nameOf(*button), "Elegir…");
}

TEST(Slider, ADragIsOneGestureAndReachesBothEnds)
{
    auto* slider = new Slider(u"Margen"_s, 0, 160);
    slider->setFixedWidth(176); // a point of the way is a step
    const Stand stand({slider});
    QStringList log;
    QObject::connect(slider, &QAbstractSlider::sliderPressed, [&] { log << u"press"_s; });
    QObject::connect(slider, &QAbstractSlider::sliderReleased, [&] { log << u"release"_s; });
    QObject::connect(
        slider, &QAbstractSlider::valueChanged, [&](int value) { log << QString::number(value); });

    gesture::press(*slider, {58, 12});
    gesture::moveTo(*slider, {500, 12});
    gesture::moveTo(*slider, {-40, 12});
    gesture::release(*slider, {-40, 12});
    EXPECT_EQ(log.join(u' ').toStdString(), "press 50 160 0 release");

    slider->setValue(50);
    gesture::press(*slider, {62, 12});
    EXPECT_EQ(slider->value(), 50) << "taking the knob beside its middle does not move it";
    gesture::moveTo(*slider, {72, 12});
    EXPECT_EQ(slider->value(), 60);
    gesture::release(*slider, {72, 12});

    slider->clearFocus();
    const QPointF at(20, 12);
    QWheelEvent wheel(at, slider->mapToGlobal(at), {}, {0, 120}, {}, {}, Qt::NoScrollPhase, false);
    QApplication::sendEvent(slider, &wheel);
    EXPECT_EQ(slider->value(), 60) << "scrolling past it changes nothing";
}

TEST(FocusRing, ShowsOutsideTheControlAndOnlyAfterKeyboardUse)
{
    auto* first = new PushButton(u"Uno"_s, PushButton::Kind::bordered);
    auto* slider = new Slider(u"Dos"_s, 0, 10);
    Stand stand({first, slider});
    const auto focus = Theme::current().focus;
    const auto besideFirst = [&] { return stand.pixel(first->geometry().topLeft() + QPoint(20, -3)); };

    first->setFocus();
    gesture::press(stand, {2, 2});
    EXPECT_FALSE(test::near(besideFirst(), focus, 12));
    gesture::key(Qt::Key_F6);
    EXPECT_TRUE(test::near(besideFirst(), focus, 12));

    gesture::key(Qt::Key_Tab);
    ASSERT_TRUE(slider->hasFocus());
    EXPECT_FALSE(test::near(besideFirst(), focus, 12));
    for (const int value : {0, 7}) {
        slider->setValue(value);
        const QPoint knob(int(std::lround(slider->knobX())), slider->height() / 2);
        EXPECT_TRUE(test::near(stand.pixel(slider->pos() + knob - QPoint(0, 11)), focus, 12))
            << "around the knob at " << value;
    }
    EXPECT_EQ(stand.childAt(slider->geometry().center()), slider) << "the ring lets the mouse through";
    gesture::press(stand, {2, 2});
    EXPECT_FALSE(isKeyboardInUse());
}

TEST(PopUpButton, TellsOnlyWhatAPersonChose)
{
    auto* list = new PopUpButton(u"Fondo"_s);
    const Stand stand({list});
    list->setChoices({{u"Pizarrón"_s}, {u"Un título que es mucho más largo que el botón"_s}});
    QList<int> chosen;
    QObject::connect(list, &PopUpButton::chosen, [&](int index) { chosen << index; });
    list->setCurrentIndex(0);
    EXPECT_EQ(nameOf(*list), "Fondo: Pizarrón");
    EXPECT_GT(list->sizeHint().width(), 250) << "no title is cut";

    list->setFocus();
    gesture::key(Qt::Key_Down);
    ASSERT_TRUE(list->findChild<QMenu*>());
    EXPECT_TRUE(list->isDown());
    gesture::key(Qt::Key_Down);
    gesture::key(Qt::Key_Return);
    EXPECT_EQ(chosen, QList<int>{1});
    EXPECT_EQ(list->currentIndex(), 0) << "the owner decides";
    list->setCurrentIndex(7);
    EXPECT_EQ(list->currentIndex(), -1);
}

TEST(PopUpButton, ItsListNeverCoversIt)
{
    auto* list = new PopUpButton(u"Lista"_s);
    Stand stand({list});
    list->setChoices({{u"Uno"_s}, {u"Dos"_s}, {u"Tres"_s}});
    const auto visible = stand.screen()->availableGeometry();
    for (const auto place : {visible.topLeft(), visible.center(), visible.bottomRight() - QPoint(120, 60)}) {
        stand.move(place);
        gesture::click(*list);
        const auto& menu = *QApplication::activePopupWidget();
        const auto& rows = *qobject_cast<const QMenu*>(&menu);
        const QRect button(list->mapToGlobal(QPoint(0, 0)), list->size());
        for (auto* action : rows.actions()) {
            const auto row = rows.actionGeometry(action).translated(menu.pos());
            EXPECT_FALSE(row.intersects(button));
            EXPECT_TRUE(visible.contains(row)) << row.left() << " " << row.top();
        }
        gesture::key(Qt::Key_Escape);
    }
}

// The system asks all windows to close, and a tip is one.
TEST(ToolTips, ATipLivesUntilItsOwnEventIsOver)
{
    ToolTips::install(*qApp);
    ToolTips::show(u"Elige la carpeta"_s, QRect(100, 100, 10, 10));
    QPointer<QWidget> tip;
    for (auto* window : QApplication::topLevelWidgets())
        if (window->accessibleName() == u"Elige la carpeta")
            tip = window;
    ASSERT_TRUE(tip);
    QCloseEvent close;
    QCoreApplication::sendEvent(tip, &close);
    EXPECT_TRUE(tip);
    QApplication::closeAllWindows();
    ToolTips::hide();
    EXPECT_FALSE(tip);
}

TEST(ToolTips, AppearBesideWhatThePointerRestsOnAndGoWithTheNextKey)
{
    ToolTips::install(*qApp);
    auto* plain = new Switch(u"Sin ayuda"_s);
    auto* button = new PushButton(u"Con"_s, PushButton::Kind::bordered);
    button->setToolTip(u"Elige la carpeta"_s);
    const Stand stand({plain, button});
    const auto enter = [](QWidget& widget) {
        QEnterEvent event({4, 4}, {4, 4}, QPointF(widget.mapToGlobal(QPoint(4, 4))));
        QApplication::sendEvent(&widget, &event);
    };
    enter(*plain);
    enter(*button);
    EXPECT_EQ(ToolTips::currentText(), QString()) << "not at once";
    ASSERT_TRUE(gesture::waitFor([] { return !ToolTips::currentText().isEmpty(); }));
    EXPECT_EQ(ToolTips::currentText(), u"Elige la carpeta"_s);
    const auto windows = QApplication::topLevelWidgets();
    const auto tip = std::ranges::find_if(windows,
        [](const auto* widget) { return widget->isVisible() && widget->windowType() == Qt::ToolTip; });
    ASSERT_NE(tip, windows.end());
    const auto below = button->mapToGlobal(QPoint(0, button->height()));
    EXPECT_EQ((*tip)->y(), below.y() + 6);
    button->setFocus();
    gesture::key(Qt::Key_F6);
    EXPECT_EQ(ToolTips::currentText(), QString());
}
