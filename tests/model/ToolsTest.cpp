// SPDX-License-Identifier: MIT
#include "model/CaptureAction.h"
#include "model/Palette.h"
#include "model/Tool.h"
#include "platform/graphics/Color.h"

#include <QSet>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace pintalux;

namespace {

template <typename E> void expectRoundTrip()
{
    for (const auto value : allCases<E>())
        EXPECT_EQ(fromRawValue<E>(rawValue(value)), value) << rawValue(value).toStdString();
}

} // namespace

TEST(StringEnum, RawValuesFindTheirCasesAndNothingElseDoes)
{
    expectRoundTrip<Tool>();
    expectRoundTrip<ArrowStyle>();
    expectRoundTrip<BlurStyle>();
    expectRoundTrip<AnnotationKind>();
    expectRoundTrip<CaptureAction>();
    expectRoundTrip<ShortcutPreset>();
    EXPECT_EQ(fromRawValue<BlurStyle>(u"Blur"), std::nullopt);
    EXPECT_EQ(fromRawValue<ArrowStyle>(u""), std::nullopt);
    EXPECT_EQ(fromRawValue<ArrowStyle>(u"double"), ArrowStyle::double_);
}

TEST(Tool, EveryToolHasAKeyOfItsOwn)
{
    QSet<QChar> keys;
    for (const auto tool : allCases<Tool>())
        keys << shortcut(tool);
    EXPECT_EQ(keys.size(), 12);
    EXPECT_EQ(shortcut(Tool::eraser), u'g');
    EXPECT_EQ(shortcut(Tool::ellipse), u'e');
}

TEST(Color, HexTextIsReadInAllItsFormsAndRefusedInOthers)
{
    struct Row {
        QString text;
        QString hex; // empty: refused
    };
    for (const auto& row : {Row{u"#1F2328"_s, u"#1F2328"_s}, Row{u"1f2328"_s, u"#1F2328"_s},
             Row{u"  #ffFFff\n"_s, u"#FFFFFF"_s}, Row{u"#12345"_s, QString()}, Row{u"#1234567"_s, QString()},
             Row{u"##12345"_s, QString()}, Row{u"#12 456"_s, QString()}, Row{u"+12345"_s, QString()},
             Row{u"#GG0000"_s, QString()}, Row{u""_s, QString()}, Row{u"0x1234"_s, QString()}}) {
        const auto color = colorFromHex(row.text);
        ASSERT_EQ(color.has_value(), !row.hex.isEmpty()) << row.text.toStdString();
        if (color) {
            EXPECT_EQ(hexString(*color), row.hex);
        }
    }
}

TEST(Color, TextSwitchesToDarkOnlyOnVeryLightColours)
{
    EXPECT_EQ(contrasting(Qt::white), QColor(0x1F, 0x23, 0x28));
    EXPECT_EQ(contrasting(QColor(0xFF, 0xD2, 0x3F)), QColor(0x1F, 0x23, 0x28)); // 0.81
    EXPECT_EQ(contrasting(QColor(0xFF, 0x9F, 0x1C)), QColor(Qt::white));        // 0.67
    EXPECT_EQ(contrasting(Qt::black), QColor(Qt::white));
    EXPECT_NEAR(luminance(QColor(0, 255, 0)), 0.7152, 1e-6);
}

TEST(Palette, GradientsStandAtTheirIndexAndSwatchesBearTheirColour)
{
    ASSERT_EQ(Palette::gradients().size(), 10);
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(Palette::gradients()[i].id, i);
        EXPECT_GE(Palette::gradients()[i].colors.size(), 2);
    }
    ASSERT_EQ(Palette::annotation().size(), 8);
    for (const auto& swatch : Palette::annotation())
        EXPECT_EQ(hexString(swatch.color), swatch.id);
}
