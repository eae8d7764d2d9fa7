#include "settings/Settings.h"

#include "platform/UserDefaults.h"

#include <QJsonArray>
#include <QTemporaryDir>

#include <limits>

using namespace pintalux;

namespace {

const QString copiedKey = QStringLiteral("ajustesCopiadosDeTrazalio");

SettingsValues read(const QJsonObject& stored)
{
    auto store = UserDefaults::inMemory(stored);
    return Settings(store).values();
}

SettingsValues changed(auto SettingsValues::*field, auto value)
{
    SettingsValues values;
    values.*field = value;
    return values;
}

/// Values of which none is a factory value.
SettingsValues otherValues()
{
    SettingsValues values;
    values.autoCopy = false;
    values.autoSave = true;
    values.playSound = true;
    values.saveFolder = u"/tmp/ñ carpeta"_qs;
    values.shortcutPreset = ShortcutPreset::controlOption;
    values.afterCapture = AfterCapture::copyOnly;
    values.lastColor = QColor(0x12, 0xAB, 0xEF);
    values.strokeWidth = 7;
    values.arrowStyle = ArrowStyle::double_;
    values.handwritten = false;
    values.calloutText = false;
    values.paletteEdge = PaletteEdge::right;
    values.toolbarHidden = true;
    values.beautifyByDefault = true;
    values.lastGradient = -1;
    return values;
}

void setAll(Settings& settings, const SettingsValues& values)
{
    settings.setAutoCopy(values.autoCopy);
    settings.setAutoSave(values.autoSave);
    settings.setPlaySound(values.playSound);
    settings.setAfterCapture(values.afterCapture);
    settings.setShortcutPreset(values.shortcutPreset);
    settings.setSaveFolder(values.saveFolder);
    settings.setLastColor(values.lastColor);
    settings.setStrokeWidth(values.strokeWidth);
    settings.setArrowStyle(values.arrowStyle);
    settings.setHandwritten(values.handwritten);
    settings.setCalloutText(values.calloutText);
    settings.setPaletteEdge(values.paletteEdge);
    settings.setToolbarHidden(values.toolbarHidden);
    settings.setBeautifyByDefault(values.beautifyByDefault);
    settings.setLastGradient(values.lastGradient);
}

} // namespace

TEST(Settings, AFreshAccountHasTheFactoryValuesAndTheCopyIsDoneWith)
{
    auto store = UserDefaults::inMemory();
    const Settings settings(store);
    EXPECT_EQ(settings.values(), SettingsValues());
    EXPECT_TRUE(settings.saveFolder().endsWith(u"/Pintalux"_qs));
    EXPECT_EQ(settings.lastColor(), QColor(255, 0, 0));
    EXPECT_FALSE(settings.hasLaunchedBefore());
    EXPECT_EQ(store.boolean(copiedKey), true);
    for (const auto& row : settingTable)
        EXPECT_FALSE(store.contains(row.key.toString())) << "reading wrote something back";
}

TEST(Settings, EverySettingComesBackFromDiskUnderItsOwnKeyAndIsAnnounced)
{
    const QTemporaryDir root;
    const auto values = otherValues();
    {
        UserDefaults store(u"app"_qs, root.path());
        Settings settings(store);
        QList<Setting> announced;
        QObject::connect(&settings, &Settings::changed, [&](Setting setting) { announced << setting; });
        setAll(settings, values);
        EXPECT_EQ(settings.values(), values);
        ASSERT_EQ(announced.size(), qsizetype(settingTable.size()));
        for (const auto& row : settingTable)
            EXPECT_EQ(announced[qsizetype(row.value)], row.value);
        settings.setHasLaunchedBefore(true);
        EXPECT_EQ(announced.size(), qsizetype(settingTable.size()));
    }
    UserDefaults store(u"app"_qs, root.path());
    EXPECT_EQ(Settings(store).values(), values);
    EXPECT_TRUE(Settings(store).hasLaunchedBefore());
    // What is on disk are words, not ordinals.
    EXPECT_EQ(store.string(u"shortcutPreset"_qs), u"controlOption"_qs);
    EXPECT_EQ(store.string(u"afterCapture"_qs), u"copyOnly"_qs);
    EXPECT_EQ(store.string(u"arrowStyle"_qs), u"double"_qs);
    EXPECT_EQ(store.string(u"paletteEdge"_qs), u"right"_qs);
    EXPECT_EQ(store.string(u"lastColor"_qs), u"#12ABEF"_qs);
    EXPECT_EQ(store.string(u"saveFolder"_qs), u"/tmp/ñ carpeta"_qs);
}

TEST(Settings, UnreadableValuesReadAsTheFactorys)
{
    const QJsonValue wrongTypes[]{QJsonValue(), QJsonArray{1}, QJsonObject{}, u"true"_qs, u""_qs, 1e300, 2.5};
    for (const auto& row : settingTable) {
        for (const auto& wrong : wrongTypes) {
            const bool isRight = (row.value == Setting::strokeWidth && wrong.isDouble())
                || (row.value == Setting::saveFolder && wrong == u"true"_qs);
            if (!isRight) {
                EXPECT_EQ(read({{row.key.toString(), wrong}}), SettingsValues())
                    << row.key.toString().toStdString();
            }
        }
    }
    for (const auto& [key, wrong] :
        std::initializer_list<std::pair<QString, QJsonValue>>{{u"autoCopy"_qs, 0}, {u"toolbarHidden"_qs, 1},
            {u"strokeWidth"_qs, false}, {u"lastGradient"_qs, true}, {u"afterCapture"_qs, u"thumb"_qs},
            {u"afterCapture"_qs, u"Thumbnail"_qs}, {u"shortcutPreset"_qs, u"controlShift "_qs},
            {u"paletteEdge"_qs, 2}, {u"lastColor"_qs, u"rojo"_qs}})
        EXPECT_EQ(read({{key, wrong}}), SettingsValues()) << key.toStdString();
}

TEST(Settings, NumbersOutOfRangeAreKeptAndDoNotWrapAround)
{
    EXPECT_EQ(read({{u"strokeWidth"_qs, -3}}), changed(&SettingsValues::strokeWidth, -3.0));
    EXPECT_EQ(read({{u"strokeWidth"_qs, 1e300}}), changed(&SettingsValues::strokeWidth, 1e300));
    EXPECT_EQ(read({{u"lastGradient"_qs, 99}}), changed(&SettingsValues::lastGradient, 99));
    EXPECT_EQ(read({{u"lastGradient"_qs, qint64(1) << 40}}),
        changed(&SettingsValues::lastGradient, std::numeric_limits<int>::max()));
    auto store = UserDefaults::inMemory();
    Settings settings(store);
    settings.setStrokeWidth(std::nan(""));
    EXPECT_EQ(settings.strokeWidth(), 4);
}

TEST(Settings, TheSiblingsValuesAreCopiedOnceAndNeverOverOwnOnes)
{
    const QJsonObject sibling{{u"strokeWidth"_qs, 8}, {u"autoCopy"_qs, false}, {u"paletteEdge"_qs, u"top"_qs},
        {u"unknown"_qs, QJsonArray{1, 2}}};
    auto store = UserDefaults::inMemory({{u"paletteEdge"_qs, u"left"_qs}}, {{u"trazalio"_qs, sibling}});
    Settings settings(store);
    EXPECT_EQ(settings.strokeWidth(), 8);
    EXPECT_FALSE(settings.autoCopy());
    EXPECT_EQ(settings.paletteEdge(), PaletteEdge::left);
    EXPECT_TRUE(store.contains(u"unknown"_qs));

    settings.setStrokeWidth(6);
    EXPECT_EQ(Settings(store).strokeWidth(), 6);
    // Not asked again, also for keys that are missing here.
    auto done = UserDefaults::inMemory({{copiedKey, true}}, {{u"trazalio"_qs, sibling}});
    EXPECT_EQ(Settings(done).values(), SettingsValues());
}

TEST(Settings, SettingTheSameShortcutsAgainIsAnnouncedSoThatTheyAreRegisteredAgain)
{
    auto store = UserDefaults::inMemory();
    Settings settings(store);
    int count = 0;
    QObject::connect(&settings, &Settings::changed, [&](Setting setting) {
        count += setting == Setting::shortcutPreset;
        EXPECT_EQ(store.string(u"shortcutPreset"_qs), rawValue(settings.shortcutPreset()))
            << "announced too early";
    });
    settings.setShortcutPreset(ShortcutPreset::commandShift);
    settings.setShortcutPreset(ShortcutPreset::commandShift);
    EXPECT_EQ(count, 2);
}
