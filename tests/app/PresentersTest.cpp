// SPDX-License-Identifier: MIT
#include "app/Presenters.h"

#include "app/messages/HUD.h"

TEST(Presenters, TheSignOfAReadingGoesWithItAndLeavesOtherMessagesAlone)
{
    const auto reading = Presenters::ofReadings();
    HUD::dismiss();
    reading.takesLong();
    EXPECT_EQ(HUD::currentMessage(), u"Leyendo el texto…");
    reading.ended();
    EXPECT_FALSE(HUD::currentMessage());
    reading.takesLong();
    HUD::show(u"Otra cosa"_s, u"sparkles"_s);
    reading.ended();
    EXPECT_EQ(HUD::currentMessage(), u"Otra cosa");
    reading.failed(Error(u"X"_s, 2, u"Falta un paquete."_s));
    EXPECT_EQ(HUD::currentMessage(), u"Falta un paquete.");
    HUD::dismiss();
}
