// SPDX-License-Identifier: MIT

// The floating thumbnail under a real mouse.

#include "app/floating/Thumbnail.h"

#include "Desktop.h"
#include "app/messages/HUD.h"
#include "platform/base/Error.h"
#include "platform/base/SkippableTimer.h"
#include "platform/base/UserDefaults.h"
#include "platform/base/Worker.h"
#include "render/export/Exporter.h"
#include "settings/Settings.h"

using namespace std::chrono_literals;

using namespace pintalux::test;

namespace {

constexpr QSize cardSize(256, 202);
constexpr int slideMilliseconds = 320;

/// A saving that has ended already.
QFuture<QString> writtenTo(const QString& path)
{
    QPromise<QString> promise;
    promise.start();
    promise.addResult(path);
    promise.finish();
    return promise.future();
}

void moveTo(QPoint point) { xdotool(u"mousemove %1 %2"_s.arg(point.x()).arg(point.y())); }

void click(QPoint point)
{
    moveTo(point);
    letPass(60);
    xdotool(u"click 1"_s);
}

class ThumbnailTest : public testing::Test {
protected:
    ThumbnailTest()
    {
        picture.fill(QColor(0xD9, 0x48, 0x0F));
        settings.setSaveFolder(folder.filePath(u"capturas"_s));
        moveTo({300, 300});
        HUD::dismiss();
    }

    ThumbnailController& show(const std::optional<Exporter::Saving>& saving = {})
    {
        thumbnail
            = std::make_unique<ThumbnailController>(CaptureResult{picture, 1, u"Informe"_s}, saving, settings,
                ThumbnailController::Actions{
                    .openEditor = [this](const CaptureResult& shot) { edited = shot.image; },
                    .revealFile = [this](const QString& path) { revealed.append(path); }},
                nullptr);
        timesClosed = 0;
        edited = {};
        QObject::connect(thumbnail.get(), &ThumbnailController::closed, [this] { ++timesClosed; });
        thumbnail->show();
        letPass(slideMilliseconds + 150);
        return *thumbnail;
    }

    /// Where the card rests: 8 within the lower right corner of the visible screen.
    static QRect card()
    {
        const auto visible = QGuiApplication::primaryScreen()->availableGeometry();
        return {visible.bottomRight() - QPoint(8, 8) - QPoint(cardSize.width() - 1, cardSize.height() - 1),
            cardSize};
    }
    static QPoint at(int x, int y) { return card().topLeft() + QPoint(x, y); }
    static QPoint onPicture() { return at(100, 80); }
    static QPoint onAction(int index) { return at(48 + 80 * index, 180); }

    bool closes(int limit = 4000)
    {
        return waitUntil([this] { return timesClosed > 0; }, limit);
    }
    QStringList saved() const { return QDir(folder.filePath(u"capturas"_s)).entryList({u"*.png"_s}); }

    QTemporaryDir folder;
    UserDefaults store = UserDefaults::inMemory();
    Settings settings{store};
    QImage picture{480, 300, QImage::Format_RGB32};
    std::unique_ptr<ThumbnailController> thumbnail;
    QImage edited;
    QStringList revealed;
    int timesClosed = 0;
};

} // namespace

TEST_F(ThumbnailTest, KeepsClearOfAPanelThatComes)
{
    show();
    const auto before = card();
    const auto isThere = [&] {
        constexpr QPoint onGround(128, 4); // above its picture
        return pictureByOthers().pixelColor(card().topLeft() + onGround) == QColor(Qt::white);
    };
    ASSERT_TRUE(isThere());
    auto& panel = desktop().start(u"trayer"_s,
        {u"--edge"_s, u"bottom"_s, u"--widthtype"_s, u"percent"_s, u"--width"_s, u"100"_s, u"--heighttype"_s,
            u"pixel"_s, u"--height"_s, u"60"_s, u"--SetPartialStrut"_s, u"true"_s});
    ASSERT_TRUE(waitUntil([&] { return card() == before.translated(0, -60); }));
    EXPECT_TRUE(waitUntil(isThere));
    desktop().stop(panel);
    EXPECT_TRUE(waitUntil([&] { return card() == before && isThere(); }));
}

TEST_F(ThumbnailTest, ComesIntoTheCornerAboveAllWithoutTheKeyboardAndGoesByItself)
{
    const DemoWindow front(u"Delante"_s, u"1270x760+0+0"_s, u"#3B6FE0"_s);
    xdotool(u"windowactivate --sync %1"_s.arg(front.id()));
    const auto focused = focusedWindow();
    show();
    const auto screen = pictureByOthers();
    EXPECT_EQ(screen.pixelColor(onPicture()), picture.pixelColor(0, 0));
    EXPECT_EQ(screen.pixelColor(at(20, 196)), QColor(Qt::white)) << "the card around the picture";
    EXPECT_EQ(focusedWindow(), focused);
    EXPECT_FALSE(closes(700)) << "it is looked after every half second";
    EXPECT_EQ(SkippableTimer::skipNext(), 8s);
    ASSERT_TRUE(closes());
    EXPECT_NE(pictureByOthers().pixelColor(onPicture()), picture.pixelColor(0, 0));
    thumbnail->close(true);
    letPass(400);
    EXPECT_EQ(timesClosed, 1);
}

TEST_F(ThumbnailTest, StaysUnderThePointerAndGoesFourSecondsAfterIt)
{
    show();
    moveTo(at(130, 196));
    letPass(700);
    EXPECT_EQ(SkippableTimer::skipNext(), 4s);
    EXPECT_FALSE(closes(700)) << "the pointer is on it";
    moveTo({300, 300});
    letPass(100);
    EXPECT_EQ(SkippableTimer::skipNext(), 4s);
    EXPECT_TRUE(closes());
}

TEST_F(ThumbnailTest, ItsButtonsSaveCopyAnnotateAndClose)
{
    show();
    click(onAction(0));
    ASSERT_TRUE(closes());
    ASSERT_EQ(saved().size(), 1);
    const auto path = folder.filePath(u"capturas/"_s + saved().first());
    EXPECT_EQ(revealed, QStringList{path});
    EXPECT_EQ(differingPixels(QImage(path).convertToFormat(QImage::Format_RGB32), picture), 0);

    show(Exporter::Saving{Exporter::wallClock(), writtenTo(path)});
    click(onAction(0));
    ASSERT_TRUE(closes());
    EXPECT_EQ(saved().size(), 1) << "what is saved is only shown";
    EXPECT_EQ(revealed, (QStringList{path, path}));

    for (const auto& toEdit : {onAction(1), onPicture()}) {
        show();
        click(toEdit);
        ASSERT_TRUE(closes());
        EXPECT_EQ(edited.cacheKey(), picture.cacheKey());
    }
    QGuiApplication::clipboard()->setText(u"antes"_s);
    show();
    click(onAction(2));
    ASSERT_TRUE(closes());
    EXPECT_EQ(HUD::currentMessage(), u"Copiado al portapapeles");
    EXPECT_TRUE(QGuiApplication::clipboard()->mimeData()->hasFormat(u"image/png"_s));
    show();
    click(at(8 + 240 - 7 - 11, 8 + 7 + 11)); // the cross
    EXPECT_TRUE(closes());
    EXPECT_TRUE(edited.isNull());
}

TEST_F(ThumbnailTest, ASaveThatFailsIsToldAndTheCardStays)
{
    QFile inTheWay(folder.filePath(u"capturas"_s));
    ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
    auto& shown = show();
    click(onAction(0));
    ASSERT_TRUE(waitUntil([] { return HUD::currentMessage().has_value(); }));
    EXPECT_TRUE(HUD::currentMessage()->startsWith(u"No se pudo guardar: "));
    EXPECT_FALSE(closes(500));
    EXPECT_TRUE(revealed.isEmpty());
    shown.close(false);
    EXPECT_EQ(timesClosed, 1) << "at once";
}

TEST_F(ThumbnailTest, AFileOnItsWayIsShownOnceItIsWrittenAndSavedAnewWhereThatFailed)
{
    const auto saveTitle = [] {
        for (const auto* top : QApplication::topLevelWidgets())
            for (const auto* button : top->findChildren<QAbstractButton*>())
                if (top->isVisible() && (button->text() == u"Mostrar" || button->text() == u"Guardar"))
                    return button->text();
        return QString();
    };
    QPromise<QString> written;
    written.start();
    show(Exporter::Saving{Exporter::wallClock(), written.future()});
    EXPECT_EQ(saveTitle(), u"Mostrar");
    click(onAction(0));
    EXPECT_FALSE(closes(500));
    EXPECT_TRUE(revealed.isEmpty());
    written.addResult(u"/algún/lugar.png"_s);
    written.finish();
    ASSERT_TRUE(closes());
    EXPECT_EQ(revealed, QStringList{u"/algún/lugar.png"_s});

    QPromise<QString> failing;
    failing.start();
    show(Exporter::Saving{Exporter::wallClock(), failing.future()});
    failing.setException(std::make_exception_ptr(Error(u"X"_s, 1, u"Disco lleno."_s)));
    failing.finish();
    EXPECT_TRUE(waitUntil([&] { return saveTitle() == u"Guardar"; }));
    EXPECT_FALSE(HUD::currentMessage()) << "nobody has asked for it";
    click(onAction(0));
    ASSERT_TRUE(closes());
    EXPECT_EQ(saved().size(), 1);
}

TEST_F(ThumbnailTest, ADragGivesAnotherProgramTheFile)
{
    auto& target = desktop().start(QStringLiteral(PINTALUX_DROP_TARGET), {u"300x200+100+100"_s});
    letPass(700);
    const auto savedFile = Exporter::quickSave(picture, 1, settings.saveFolder(), u"Guardada"_s);
    for (const bool isSaved : {true, false}) {
        show(isSaved ? std::optional(Exporter::Saving{Exporter::wallClock(), writtenTo(savedFile)})
                     : std::nullopt);
        const auto from = onPicture();
        // By itself meanwhile: the drag keeps this process.
        desktop().start(u"xdotool"_s,
            u"mousemove %1 %2 mousedown 1 sleep 0.1 mousemove 900 500 sleep 0.1 mousemove 600 300 sleep 0.1 "
            "mousemove 300 220 sleep 0.1 mousemove 250 200 sleep 0.3 mouseup 1"_s.arg(from.x())
                .arg(from.y())
                .split(u' '));
        QByteArray line;
        waitUntil([&] { return !(line = target.readLine()).isEmpty(); });
        const auto dropped = QString::fromUtf8(line).section(u'\t', 0, 0);
        EXPECT_EQ(dropped == savedFile, isSaved) << dropped.toStdString();
        EXPECT_EQ(differingPixels(QImage(dropped).convertToFormat(QImage::Format_RGB32), picture), 0);
        thumbnail->close(false);
    }
    EXPECT_EQ(saved().size(), 1) << "a drag saves nothing into the captures";
    desktop().stop(target);
}

TEST_F(ThumbnailTest, UnderACompositorItsShadowIsNoObstacle)
{
    auto& compositor = desktop().startCompositor();
    const DemoWindow below(u"Debajo"_s, u"1270x760+0+0"_s, u"#3B6FE0"_s);
    const auto before = pictureByOthers();
    show();
    EXPECT_NE(pictureByOthers().pixelColor(at(-4, 100)), before.pixelColor(at(-4, 100))) << "no shadow";
    const auto under = [](QPoint point) {
        moveTo(point);
        letPass(100);
        return desktop().run(u"xdotool"_s, {u"getmouselocation"_s, u"--shell"_s}).split('\n').value(3);
    };
    EXPECT_EQ(under(at(-20, 100)), under({300, 300}));
    EXPECT_NE(under(at(20, 190)), under({300, 300}));
    thumbnail->close(false);
    desktop().stop(compositor);
}
