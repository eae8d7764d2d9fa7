// SPDX-License-Identifier: MIT
#include "settings/Settings.h"

#include "OtherValues.h"
#include "platform/base/UserDefaults.h"

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

} // namespace

TEST(Settings, AFreshAccountHasTheFactoryValuesAndNothingIsWrittenBack)
{
    auto store = UserDefaults::inMemory();
    const Settings settings(store);
    EXPECT_EQ(settings.values(), SettingsValues());
    EXPECT_TRUE(settings.saveFolder().endsWith(u"/Pintalux"_s));
    EXPECT_FALSE(settings.hasLaunchedBefore());
    for (const auto& row : settingTable)
        EXPECT_FALSE(store.contains(row.key.toString()));
}

TEST(Settings, EverySettingComesBackFromDiskUnderItsOwnKeyAndIsAnnounced)
{
    const QTemporaryDir root;
    const auto values = test::otherValues();
    {
        UserDefaults store(u"app"_s, root.path());
        Settings settings(store);
        QList<Setting> announced;
        QObject::connect(&settings, &Settings::changed, [&](Setting setting) { announced << setting; });
        test::setAll(settings, values);
        EXPECT_EQ(settings.values(), values);
        ASSERT_EQ(announced.size(), qsizetype(settingTable.size()));
        for (const auto& row : settingTable)
            EXPECT_EQ(announced[qsizetype(row.value)], row.value);
        settings.setHasLaunchedBefore(true);
        EXPECT_EQ(announced.size(), qsizetype(settingTable.size()));
    }
    UserDefaults store(u"app"_s, root.path());
    EXPECT_EQ(Settings(store).values(), values);
    EXPECT_TRUE(Settings(store).hasLaunchedBefore());
    // What is on disk are words, not ordinals.
    EXPECT_EQ(store.string(u"shortcutPreset"_s), u"commandShift"_s);
    EXPECT_EQ(store.string(u"lastColor"_s), u"#12ABEF"_s);
}

TEST(Settings, UnreadableValuesReadAsTheFactorys)
{
    const QJsonValue wrongTypes[]{QJsonValue(), QJsonArray{1}, QJsonObject{}, u"true"_s, u""_s, 1e300, 2.5};
    for (const auto& row : settingTable) {
        for (const auto& wrong : wrongTypes) {
            const bool isRight = (row.value == Setting::strokeWidth && wrong.isDouble())
                || (row.value == Setting::saveFolder && wrong == u"true"_s);
            if (!isRight) {
                EXPECT_EQ(read({{row.key.toString(), wrong}}), SettingsValues())
                    << row.key.toString().toStdString();
            }
        }
    }
    for (const auto& [key, wrong] : std::initializer_list<std::pair<QString, QJsonValue>>{{u"autoCopy"_s, 0},
             {u"lastGradient"_s, true}, {u"afterCapture"_s, u"Thumbnail"_s}, {u"paletteEdge"_s, 2}})
        EXPECT_EQ(read({{key, wrong}}), SettingsValues()) << key.toStdString();
}

TEST(Settings, NumbersOutOfRangeAreKeptAndDoNotWrapAround)
{
    EXPECT_EQ(read({{u"strokeWidth"_s, -3}}), changed(&SettingsValues::strokeWidth, -3.0));
    EXPECT_EQ(read({{u"strokeWidth"_s, 1e300}}), changed(&SettingsValues::strokeWidth, 1e300));
    EXPECT_EQ(read({{u"lastGradient"_s, 99}}), changed(&SettingsValues::lastGradient, 99));
    EXPECT_EQ(read({{u"lastGradient"_s, qint64(1) << 40}}),
        changed(&SettingsValues::lastGradient, std::numeric_limits<int>::max()));
    auto store = UserDefaults::inMemory();
    Settings settings(store);
    settings.setStrokeWidth(std::nan(""));
    EXPECT_EQ(settings.strokeWidth(), 4);
}

TEST(Settings, TheSiblingsValuesAreCopiedOnceAndNeverOverOwnOnes)
{
    const QJsonObject sibling{{u"strokeWidth"_s, 8}, {u"autoCopy"_s, false}, {u"paletteEdge"_s, u"top"_s},
        {u"unknown"_s, QJsonArray{1, 2}}};
    auto store = UserDefaults::inMemory({{u"paletteEdge"_s, u"left"_s}}, {{u"trazalio"_s, sibling}});
    Settings settings(store);
    EXPECT_EQ(settings.strokeWidth(), 8);
    EXPECT_FALSE(settings.autoCopy());
    EXPECT_EQ(settings.paletteEdge(), PaletteEdge::left);
    EXPECT_TRUE(store.contains(u"unknown"_s));

    settings.setStrokeWidth(6);
    EXPECT_EQ(Settings(store).strokeWidth(), 6);
    // Not asked again, also for keys that are missing here.
    auto done = UserDefaults::inMemory({{copiedKey, true}}, {{u"trazalio"_s, sibling}});
    EXPECT_EQ(Settings(done).values(), SettingsValues());
}
