// SPDX-License-Identifier: MIT
#include "settings/SettingsFile.h"

#include "OtherValues.h"
#include "Stage.h"
#include "app/messages/HUD.h"
#include "platform/base/UserDefaults.h"
#include "settings/preferences/SettingsFileActions.h"

namespace {

/// A home of its own, with settings of which none has the factory's value.
class SettingsFileTest : public testing::Test {
protected:
    SettingsFileTest()
    {
        qputenv("HOME", QFile::encodeName(home.path()));
        qputenv("XDG_DATA_HOME", QFile::encodeName(home.filePath(u"data"_s)));
        test::setAll(settings, test::otherValues());
        QObject::connect(&settings, &Settings::changed, [this](Setting setting) { announced << setting; });
    }
    ~SettingsFileTest() override
    {
        qputenv("HOME", previousHome);
        qunsetenv("XDG_DATA_HOME");
        HUD::dismiss();
    }

    /// The fields of a file with these settings.
    QJsonObject fields() const { return QJsonDocument::fromJson(settings.snapshot().encoded()).object(); }

    QByteArray with(const QString& name, const QJsonValue& value) const
    {
        auto changed = fields();
        changed.insert(name, value);
        return QJsonDocument(changed).toJson();
    }

    void read(const QByteArray& json)
    {
        stage::put(file, json);
        settings.read(file);
    }

    QByteArray previousHome = qgetenv("HOME");
    QTemporaryDir home;
    QString file = home.filePath(u"ajustes.json"_s);
    UserDefaults store = UserDefaults::inMemory();
    Settings settings{store};
    QList<Setting> announced;
};

} // namespace

TEST_F(SettingsFileTest, EverySettingTravelsToAnotherAccount)
{
    const auto path = home.filePath(u"carpeta/nueva/Configuración de Pintalux.json"_s);
    settings.write(path);
    auto otherStore = UserDefaults::inMemory();
    Settings other(otherStore);
    for (const auto& row : settingTable)
        EXPECT_NE(other.snapshot()[row.value], settings.snapshot()[row.value])
            << row.key.toString().toStdString() << " would be no proof";
    other.read(path);
    EXPECT_EQ(other.values(), settings.values());
    EXPECT_EQ(Settings(otherStore).values(), settings.values()) << "it has not reached the store";
    EXPECT_EQ(QDir(QFileInfo(path).path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
}

TEST_F(SettingsFileTest, TheFileIsWhatItsFirstReadersExpect)
{
    settings.write(file);
    const auto text = stage::contents(file);
    EXPECT_TRUE(text.startsWith("{\n    \"afterCapture\""));
    EXPECT_TRUE(text.contains("\"\\/tmp\\/ñ \\\"a\\\"\\\\\\/b\"")) << text.toStdString();
    EXPECT_EQ(QJsonDocument::fromJson(text)[u"saveFolder"_s].toString(), settings.saveFolder());
    EXPECT_EQ(QJsonDocument::fromJson(text)[u"version"_s].toInt(), 1);
}

TEST_F(SettingsFileTest, ValuesThatMeanNothingAreReplaced)
{
    struct Row {
        const char* name;
        QJsonValue value;
        Setting setting;
        QJsonValue becomes;
    };
    const auto inHome = [this](const char* rest) { return home.path() + QString::fromUtf8(rest); };
    for (const auto& row : std::initializer_list<Row>{
             {"strokeWidth", 0.5, Setting::strokeWidth, 1},
             {"strokeWidth", 35, Setting::strokeWidth, 20},
             {"gradient", -5, Setting::lastGradient, -1},
             {"gradient", 99, Setting::lastGradient, int(Palette::gradients().size()) - 1},
             {"afterCapture", u"thumb"_s, Setting::afterCapture, u"editor"_s},
             {"paletteEdge", u"Top"_s, Setting::paletteEdge, u"bottom"_s},
             {"color", u"rojo"_s, Setting::lastColor, u"#FF0000"_s},
             {"color", u" 00ff00 "_s, Setting::lastColor, u"#00FF00"_s},
             {"shortcutPreset", u"none"_s, Setting::shortcutPreset, u"commandShift"_s},
             {"saveFolder", u"~/Capturas"_s, Setting::saveFolder, inHome("/Capturas")},
             {"saveFolder", u"Capturas/./"_s, Setting::saveFolder, inHome("/Capturas")},
             {"saveFolder", u":/a"_s, Setting::saveFolder, inHome("/:/a")},
             {"saveFolder", u"/a/~/b"_s, Setting::saveFolder, u"/a/~/b"_s},
             {"saveFolder", u""_s, Setting::saveFolder, Settings::defaultFolder()},
             {"saveFolder", u"/a\0b"_s, Setting::saveFolder, Settings::defaultFolder()},
             {"somethingNew", QJsonArray{1}, Setting::autoCopy, false},
         }) {
        read(with(QString::fromUtf8(row.name), row.value));
        EXPECT_EQ(settings.snapshot()[row.setting], row.becomes)
            << row.name << " " << QJsonDocument({row.value}).toJson().toStdString();
    }
}

TEST_F(SettingsFileTest, WhatIsNoSettingsFileIsRefusedInWordsAndChangesNothing)
{
    const auto good = settings.snapshot().encoded();
    auto incomplete = fields();
    incomplete.remove(u"gradient"_s);
    const auto twice
        = [&](const QByteArray& field) { return QByteArray(good).replace("{\n", "{" + field + ","); };
    struct Row {
        QByteArray json;
        const char* sentence;
    };
    const auto foreign = "El archivo no es una configuración de Pintalux.";
    for (const auto& row : std::initializer_list<Row>{
             {with(u"app"_s, u"Otro"_s), foreign},
             {"{}", foreign},
             {"[1, 2]", foreign},
             {"", "El archivo está vacío."},
             {"{\n\"app\": \"Pintalux\",\n x}", "El archivo no es JSON válido (línea 3)."},
             {good.chopped(3), "El archivo no es JSON válido (línea 18)."},
             {good + "1", "El archivo no es JSON válido (línea 20)."},
             {QByteArray(100'000, '['), "El archivo no es JSON válido (línea 1)."},
             {QByteArray(good).replace("\xC3\xB1", "\xC3"), "El archivo no es JSON válido (línea 14)."},
             {QByteArray(2 << 20, ' '),
                 "El archivo es demasiado grande para ser una configuración de Pintalux."},
             {QJsonDocument(incomplete).toJson(), "Al archivo le falta «gradient»."},
             {with(u"app"_s, 1), "En el archivo, «app» debe ser un texto."},
             {with(u"version"_s, u"1"_s), "En el archivo, «version» debe ser un número entero."},
             {with(u"paletteEdge"_s, 2), "En el archivo, «paletteEdge» debe ser un texto."},
             {with(u"gradient"_s, 1.5), "En el archivo, «gradient» debe ser un número entero."},
             {QByteArray(good).replace("7.5", "1e999"), "El archivo no es JSON válido (línea 16)."},
             {twice("\"autoCopy\": true"), "El archivo contiene «autoCopy» dos veces."},
             {twice("\"\\u0061pp\" :\"x\""), "El archivo contiene «app» dos veces."},
             {twice("\"a\\\"{\": [{\"a\": 1, \"a\": \"b\\\\\"}], \"a\\\"{\"\n:0"),
                 "El archivo contiene «a\"{» dos veces."},
         }) {
        try {
            read(row.json);
            ADD_FAILURE() << "accepted: " << row.json.left(200).toStdString();
        } catch (const Error& error) {
            EXPECT_EQ(error.localizedDescription.toStdString(), row.sentence);
            EXPECT_EQ(error.code == 2, row.sentence == foreign) << row.sentence;
        }
    }
    EXPECT_THROW(settings.read(home.filePath(u"no.json"_s)), Error);
    EXPECT_THROW(settings.read(home.path()), Error);
    EXPECT_THROW(settings.read(u"/dev/zero"_s), Error);
    EXPECT_EQ(settings.snapshot().encoded(), good);
    EXPECT_TRUE(announced.isEmpty());
    read("\xEF\xBB\xBF" + QByteArray(good).replace("\\/", "/").replace("Pintalux", "Pintalu\\u0078"));
    EXPECT_EQ(settings.snapshot().encoded(), good) << "either form of a character is the same file";
}

TEST_F(SettingsFileTest, AnImportIsOneWriteAndAnnouncesEachSettingButShortcutsThatStay)
{
    settings.write(file);
    announced.clear();
    settings.read(file);
    QList<Setting> all;
    for (const auto& row : settingTable)
        all << row.value;
    auto withoutShortcuts = all;
    withoutShortcuts.removeOne(Setting::shortcutPreset);
    EXPECT_EQ(announced, withoutShortcuts);

    announced.clear();
    const auto connection = QObject::connect(&settings, &Settings::changed, [&] {
        EXPECT_EQ(settings.values(), SettingsValues()) << "announced half applied";
        EXPECT_EQ(Settings(store).values(), SettingsValues()) << "announced before it was stored";
    });
    settings.resetToFactory();
    EXPECT_EQ(announced, all);
    QObject::disconnect(connection);
}

namespace {

class SettingsFileActionsTest : public SettingsFileTest {
protected:
    SettingsFileActionsTest() { QApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }

    template <typename Panel> QList<Panel*> panels()
    {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return window.findChildren<Panel*>(Qt::FindDirectChildrenOnly);
    }

    void choose(const QString& path)
    {
        const auto open = panels<QFileDialog>();
        ASSERT_EQ(open.size(), 1);
        open[0]->selectFile(path);
        static_cast<QDialog*>(open[0])->accept();
    }

    void press(const QString& button)
    {
        const auto open = panels<QMessageBox>();
        ASSERT_EQ(open.size(), 1);
        for (auto* candidate : open[0]->buttons())
            if (candidate->text() == button)
                return candidate->click();
        ADD_FAILURE() << "no such button";
    }

    void expectMessage(const QString& text)
    {
        EXPECT_EQ(HUD::currentMessage().value_or(QString()).toStdString(), text.toStdString());
        HUD::dismiss();
    }

    QWidget window;
    SettingsFileActions actions{settings, &window};
};

} // namespace

TEST_F(SettingsFileActionsTest, ACopyIsKeptAndRestoredAndAFailureIsTold)
{
    actions.restoreSavedCopy();
    expectMessage(u"No se pudo restaurar: «%1» no existe."_s.arg(Settings::savedCopyPath()));
    stage::put(home.filePath(u"data"_s), "in the way");
    actions.saveCopy();
    expectMessage(u"No se pudo guardar: «%1» no es una carpeta."_s.arg(home.filePath(u"data"_s)));
    QFile::remove(home.filePath(u"data"_s));
    EXPECT_FALSE(Settings::hasSavedCopy());
    actions.saveCopy();
    expectMessage(u"Configuración guardada"_s);
    EXPECT_EQ(stage::modeOf(Settings::savedCopyPath()), 0600u);
    const auto values = settings.values();
    settings.resetToFactory();
    EXPECT_TRUE(Settings::hasSavedCopy()) << "it outlives a reset";
    actions.restoreSavedCopy();
    expectMessage(u"Configuración guardada restaurada"_s);
    EXPECT_EQ(settings.values(), values);
}

TEST_F(SettingsFileActionsTest, AFileIsExportedAndImportedAndCancellingSaysNothing)
{
    actions.exportSettings();
    actions.importSettings();
    ASSERT_EQ(panels<QFileDialog>().size(), 1) << "one panel at a time";
    EXPECT_EQ(QFileInfo(panels<QFileDialog>()[0]->selectedFiles().value(0)).fileName(),
        u"Configuración de Pintalux.json");
    choose(home.filePath(u"mía"_s));
    expectMessage(u"Configuración exportada"_s);
    EXPECT_EQ(stage::contents(home.filePath(u"mía.json"_s)), settings.snapshot().encoded());

    actions.importSettings();
    panels<QFileDialog>()[0]->reject();
    actions.exportSettings();
    panels<QFileDialog>()[0]->reject();
    EXPECT_EQ(HUD::currentMessage(), std::nullopt);

    stage::put(file, with(u"app"_s, u"Otro"_s));
    actions.importSettings();
    choose(file);
    expectMessage(u"No se pudo importar: El archivo no es una configuración de Pintalux."_s);
    stage::put(file, with(u"strokeWidth"_s, 9));
    actions.importSettings();
    choose(file);
    expectMessage(u"Configuración importada"_s);
    EXPECT_EQ(settings.strokeWidth(), 9);
}

TEST_F(SettingsFileActionsTest, AFolderThatNobodyCanHaveIsTakenOverAndTold)
{
    for (const auto& folder : {u'/' + QString(5000, u'a'), file + u"/carpeta"_s}) {
        stage::put(file, with(u"saveFolder"_s, folder));
        actions.importSettings();
        choose(file);
        EXPECT_EQ(settings.saveFolder(), folder);
        expectMessage(u"Configuración importada, pero su carpeta de capturas no se puede usar"_s);
    }
    stage::put(file, with(u"saveFolder"_s, home.filePath(u"nueva/carpeta"_s)));
    actions.importSettings();
    choose(file);
    expectMessage(u"Configuración importada"_s);
}

TEST_F(SettingsFileActionsTest, AResetAsksFirst)
{
    const auto before = settings.values();
    actions.reset();
    ASSERT_EQ(panels<QMessageBox>().size(), 1);
    press(u"Cancelar"_s);
    EXPECT_EQ(settings.values(), before);
    EXPECT_EQ(HUD::currentMessage(), std::nullopt);
    actions.reset();
    press(u"Restablecer"_s);
    EXPECT_EQ(settings.values(), SettingsValues());
    expectMessage(u"Valores iniciales restablecidos"_s);
}
