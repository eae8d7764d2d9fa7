// SPDX-License-Identifier: MIT
#include "model/Tool.h"
#include "platform/graphics/Color.h"

// Stored values must be found again after years.
TEST(StringEnum, RawValuesFindTheirCasesAndNothingElseDoes)
{
    for (const auto style : allCases<ArrowStyle>())
        EXPECT_EQ(fromRawValue<ArrowStyle>(rawValue(style)), style);
    EXPECT_EQ(fromRawValue<BlurStyle>(u"Blur"), std::nullopt);
    EXPECT_EQ(fromRawValue<ArrowStyle>(u""), std::nullopt);
    EXPECT_EQ(fromRawValue<ArrowStyle>(u"double"), ArrowStyle::double_);
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
