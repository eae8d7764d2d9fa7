// SPDX-License-Identifier: MIT
#include "Gestures.h"
#include "controls/PopUpButton.h"
#include "controls/PushButton.h"
#include "controls/Slider.h"
#include "controls/Switch.h"
#include "controls/theme/ControlPainting.h"
#include "platform/base/UserDefaults.h"
#include "platform/session/LoginItem.h"
#include "settings/Settings.h"
#include "settings/preferences/PreferencesForm.h"
#include "settings/preferences/PreferencesView.h"
#include "settings/preferences/PreferencesWindow.h"

namespace {

class FakeLoginItem : public LoginItem {
public:
    bool isEnabled() const override { return enabled; }
    void setEnabled(bool wished) override
    {
        if (refusal)
            throw Error(Error::ownDomain, 1, *refusal);
        enabled = wished;
    }

    bool enabled = false;
    std::optional<QString> refusal;
};

class PreferencesTest : public testing::Test {
protected:
    void SetUp() override
    {
        PreferencesHost host;
        host.version = u"3.2"_s;
        host.loginItem = &login;
        host.hasPermission = [this] { return permission; };
        host.requestPermission = [this] { permission = true; };
        host.failedShortcuts = [this] { return failed; };
        host.hasSavedCopy = [this] { return savedCopy; };
        host.saveCopy = [this] { savedCopy = true; };
        host.restoreSavedCopy = [this] { log << u"restore"_s; };
        host.exportSettings = [this] { log << u"export"_s; };
        host.importSettings = [this] { log << u"import"_s; };
        host.resetSettings = [this] { log << u"reset"_s; };
        window = std::make_unique<PreferencesWindow>(settings, host);
        window->place();
        gesture::present(*window);
    }

    QList<QWidget*> all() const { return window->view().widget()->findChildren<QWidget*>(); }

    template <typename T> T& named(const QString& name) const
    {
        for (auto* widget : window->findChildren<T*>())
            if (QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name) == name)
                return *widget;
        throw std::runtime_error("nothing is called " + name.toStdString());
    }

    template <typename T> bool shows(const QString& text) const
    {
        const auto widgets = window->findChildren<T*>();
        return std::ranges::any_of(
            widgets, [&](const T* widget) { return widget->text() == text && widget->isVisible(); });
    }

    QMenu& open(QWidget& button) const
    {
        gesture::click(button);
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (!menu)
            throw std::runtime_error("no menu has opened");
        return *menu;
    }

    void choose(QWidget& button, const QString& title) const
    {
        auto& menu = open(button);
        for (auto* action : menu.actions())
            if (action->text() == title) {
                // By the keyboard: the menu of newer toolkits overlooks a click that no pointer made.
                menu.setActiveAction(action);
                gesture::key(Qt::Key_Return);
                return;
            }
        throw std::runtime_error("no such row: " + title.toStdString());
    }

    UserDefaults store = UserDefaults::inMemory();
    Settings settings{store};
    FakeLoginItem login;
    bool permission = true;
    bool savedCopy = false;
    QSet<CaptureAction> failed;
    QStringList log;
    std::unique_ptr<PreferencesWindow> window;
};

} // namespace

TEST_F(PreferencesTest, EverySwitchWritesItsSettingAndFollowsIt)
{
    const struct {
        QString title;
        QString key;
        void (Settings::*set)(bool);
        bool inverted = false;
    } rows[] = {
        {u"Copiar al portapapeles automáticamente"_s, u"autoCopy"_s, &Settings::setAutoCopy},
        {u"Guardar automáticamente en la carpeta"_s, u"autoSave"_s, &Settings::setAutoSave},
        {u"Sonido al capturar"_s, u"playSound"_s, &Settings::setPlaySound},
        {u"Letra manuscrita en los textos"_s, u"handwritten"_s, &Settings::setHandwritten},
        {u"Textos tipo llamada (bocadillo con puntero)"_s, u"calloutText"_s, &Settings::setCalloutText},
        {u"Mostrar la paleta al abrir el editor"_s, u"toolbarHidden"_s, &Settings::setToolbarHidden, true},
        {u"Embellecer las capturas nuevas"_s, u"beautifyByDefault"_s, &Settings::setBeautifyByDefault},
    };
    for (const auto& [title, key, set, inverted] : rows) {
        auto& toggle = named<Switch>(title);
        const bool before = toggle.isChecked();
        gesture::click(toggle);
        EXPECT_EQ(store.boolean(key), !before != inverted) << title.toStdString();
        auto& row = *toggle.parentWidget();
        gesture::click(row, {30, row.height() / 2.0});
        EXPECT_EQ(store.boolean(key), before != inverted) << "the whole row works: " << title.toStdString();
        (settings.*set)(!before != inverted);
        EXPECT_EQ(toggle.isChecked(), !before) << title.toStdString();
    }
}

TEST_F(PreferencesTest, ListsTilesSwatchesAndTheSliderWriteTheirSettings)
{
    choose(named<PopUpButton>(u"Estilo de flecha: A mano"_s), u"Doble punta"_s);
    EXPECT_EQ(store.string(u"arrowStyle"_s), u"double"_s);
    choose(named<PopUpButton>(u"Posición de la paleta: Abajo"_s), u"Izquierda"_s);
    EXPECT_EQ(store.string(u"paletteEdge"_s), u"left"_s);
    choose(named<PopUpButton>(u"Fondo: Pizarrón"_s), u"Sin fondo"_s);
    EXPECT_EQ(store.integer(u"lastGradient"_s), -1);
    settings.setLastGradient(99);
    EXPECT_EQ(named<PopUpButton>(u"Fondo: Sin fondo"_s).currentIndex(), 10);

    gesture::click(named<QAbstractButton>(u"Mostrar miniatura flotante"_s));
    EXPECT_EQ(store.string(u"afterCapture"_s), u"thumbnail"_s);
    gesture::click(named<QAbstractButton>(u"Menta"_s));
    EXPECT_EQ(store.string(u"lastColor"_s), u"#2BD67B"_s);
    settings.setLastColor(QColor(0x12, 0x34, 0x56));
    EXPECT_FALSE(named<QAbstractButton>(u"Menta"_s).isChecked()) << "a colour of one's own is no swatch";

    auto& slider = named<Slider>(u"Grosor"_s);
    gesture::click(slider, {slider.width() - 1.0, 12});
    EXPECT_EQ(store.real(u"strokeWidth"_s), 20);
    settings.setStrokeWidth(6.6);
    EXPECT_EQ(slider.value(), 7);
    EXPECT_EQ(store.real(u"strokeWidth"_s), 6.6) << "showing a width does not round it";
}

TEST_F(PreferencesTest, ANewCombinationShowsAtOnceAndATakenKeyIsMarked)
{
    EXPECT_TRUE(shows<QLabel>(u"Ctrl+Mayús+5"_s));
    failed = {CaptureAction::window};
    choose(named<PopUpButton>(u"Combinación: Ctrl+Mayús+número"_s), u"Super+Mayús+número"_s);
    EXPECT_EQ(store.string(u"shortcutPreset"_s), u"commandShift"_s);
    EXPECT_TRUE(shows<QLabel>(u"Super+Mayús+1"_s));
    EXPECT_FALSE(shows<QLabel>(u"Ctrl+Mayús+5"_s));
    int marked = 0;
    for (const auto* widget : all())
        if (widget->isVisible() && widget->toolTip().startsWith(u"El atajo está en uso"))
            ++marked;
    EXPECT_EQ(marked, 1);
}

TEST_F(PreferencesTest, ARefusedLoginItemStaysOffAndItsReasonHasRoom)
{
    auto& toggle = named<Switch>(u"Abrir al iniciar sesión"_s);
    gesture::click(toggle);
    EXPECT_TRUE(login.enabled && toggle.isChecked());
    login.enabled = false;
    window->view().refresh();
    EXPECT_FALSE(toggle.isChecked()) << "it may be changed elsewhere";

    login.refusal
        = QString(u"no se puede escribir en una carpeta con un nombre bastante largo "_s).repeated(4);
    gesture::click(toggle);
    EXPECT_FALSE(toggle.isChecked());
    const auto message = u"No se pudo cambiar: "_s + *login.refusal;
    ASSERT_TRUE(shows<Form::Label>(message));
    QCoreApplication::sendPostedEvents();
    auto& label = named<Form::Label>(message);
    EXPECT_GT(label.height(), 50);
    EXPECT_EQ(label.height(), label.heightForWidth(label.width()));
    EXPECT_GE(label.parentWidget()->height(), label.geometry().bottom());
}

TEST_F(PreferencesTest, PermissionAndSettingsFileActionsShowTheirState)
{
    auto& restore = named<PushButton>(u"Volver a la guardada"_s);
    EXPECT_FALSE(restore.isEnabled());
    gesture::click(restore);
    gesture::click(named<PushButton>(u"Guardar"_s));
    EXPECT_TRUE(restore.isEnabled());
    gesture::click(restore);
    for (const auto& row :
        {u"Exportar a un archivo…"_s, u"Importar desde un archivo…"_s, u"Restablecer valores iniciales…"_s})
        choose(named<PushButton>(u"Más"_s), row);
    EXPECT_EQ(log.join(u' ').toStdString(), "restore export import reset");

    EXPECT_TRUE(shows<QLabel>(u"Permiso de Grabación de pantalla concedido"_s));
    permission = false;
    window->view().refresh();
    EXPECT_TRUE(shows<QLabel>(u"Falta el permiso de Grabación de pantalla"_s));
    gesture::click(named<PushButton>(u"Conceder…"_s));
    EXPECT_TRUE(shows<QLabel>(u"Permiso de Grabación de pantalla concedido"_s));
    EXPECT_FALSE(named<PushButton>(u"Conceder…"_s).isVisible());
}

TEST_F(PreferencesTest, NothingIsClippedAndOnlyALongFolderGivesWay)
{
    settings.setShortcutPreset(ShortcutPreset::commandShift);
    settings.setSaveFolder(u"/media/"_s + QString(u"una carpeta "_s).repeated(12) + u"/capturas"_s);
    permission = false;
    failed = {CaptureAction::text};
    savedCopy = true;
    login.refusal = u"permiso denegado"_s;
    gesture::click(named<Switch>(u"Abrir al iniciar sesión"_s));
    window->view().refresh();
    QCoreApplication::sendPostedEvents();
    int shortened = 0;
    for (const auto* widget : all()) {
        if (!widget->isVisible() || widget->testAttribute(Qt::WA_TransparentForMouseEvents))
            continue;
        const auto what
            = QString(u"%1 “%2”"_s)
                  .arg(QString::fromLatin1(widget->metaObject()->className()), widget->accessibleName())
                  .toStdString();
        EXPECT_TRUE(widget->parentWidget()->rect().contains(widget->geometry())) << what;
        if (qobject_cast<const QLabel*>(widget) && !widget->toolTip().isEmpty())
            ++shortened;
        else
            EXPECT_GE(widget->width(), widget->minimumSizeHint().width()) << what;
        for (const auto* sibling :
            widget->parentWidget()->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
            EXPECT_TRUE(sibling == widget || !sibling->isVisible()
                || !sibling->geometry().intersects(widget->geometry()))
                << what;
    }
    EXPECT_EQ(shortened, 1);
    EXPECT_EQ(window->view().widget()->width(), 580);
    EXPECT_EQ(window->view().widget()->height(), window->view().contentHeight());
}

TEST_F(PreferencesTest, EveryControlIsReachedByTabHasANameAndComesIntoView)
{
    auto& form = *window->view().widget();
    // Of a group of radio buttons, Tab reaches one; the arrows do the rest.
    const auto isInGroup = [](const QWidget* widget) {
        const auto* button = qobject_cast<const QAbstractButton*>(widget);
        return button && button->autoExclusive();
    };
    for (const QColor color : {settings.lastColor(), QColor(0x12, 0x34, 0x56)}) {
        settings.setLastColor(color);
        int alone = 0;
        for (auto* widget : all())
            alone += widget->isVisible() && widget->isEnabled() && (widget->focusPolicy() & Qt::TabFocus)
                && !isInGroup(widget);
        QSet<QWidget*> visited;
        QSet<QWidget*> groups;
        form.setFocus();
        for (gesture::key(Qt::Key_Tab); !visited.contains(QApplication::focusWidget());
             gesture::key(Qt::Key_Tab)) {
            auto* focused = QApplication::focusWidget();
            visited << focused;
            if (isInGroup(focused))
                groups << focused->parentWidget();
            const auto name = QAccessible::queryAccessibleInterface(focused)->text(QAccessible::Name);
            EXPECT_FALSE(name.isEmpty()) << focused->metaObject()->className();
            const QRect place(focused->mapTo(window.get(), QPoint(0, 0)), focused->size());
            EXPECT_TRUE(window->rect().contains(place)) << name.toStdString();
        }
        EXPECT_EQ(groups.size(), 2) << "tiles and swatches";
        EXPECT_EQ(std::ranges::count_if(visited, std::not_fn(isInGroup)), alone);
        EXPECT_GE(alone, 17);
    }

    named<QAbstractButton>(u"Abrir el editor directamente"_s).setFocus();
    gesture::key(Qt::Key_Right);
    EXPECT_EQ(settings.afterCapture(), AfterCapture::thumbnail) << "arrows move within the group";
    int closings = 0;
    QObject::connect(window.get(), &PreferencesWindow::closed, [&] { ++closings; });
    gesture::key(Qt::Key_Escape);
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(closings, 1);
}
