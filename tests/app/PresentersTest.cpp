// SPDX-License-Identifier: MIT
#include "app/Presenters.h"

#include "app/messages/HUD.h"

#include <QApplication>
#include <QMessageBox>

using namespace Qt::StringLiterals;

using namespace pintalux;

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

TEST(Presenters, TheWayToThePermissionIsShownOnceHoweverOftenItIsAskedFor)
{
    const auto captures = Presenters::ofCaptures();
    const PermissionHelp help{.message = u"Activa algo"_s,
        .details = u"Así."_s,
        .settingsButton = {},
        .settings = {},
        .dismissButton = u"Ahora no"_s};
    captures.showPermissionHelp(help);
    captures.showPermissionHelp(help);
    QList<QMessageBox*> shown;
    for (auto* window : QApplication::topLevelWidgets())
        if (auto* alert = qobject_cast<QMessageBox*>(window); alert && alert->isVisible())
            shown << alert;
    ASSERT_EQ(shown.size(), 1);
    EXPECT_EQ(shown.first()->text(), help.message);
    EXPECT_EQ(shown.first()->buttons().size(), 1) << "there is nothing to open";
    shown.first()->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    captures.showPermissionHelp(help);
    int visible = 0;
    for (auto* window : QApplication::topLevelWidgets())
        if (qobject_cast<QMessageBox*>(window) && window->isVisible()) {
            ++visible;
            window->close();
        }
    EXPECT_EQ(visible, 1) << "again after it was closed";
}
