// SPDX-License-Identifier: MIT
#include "Desktop.h"
#include "platform/x11/capture/X11ScreenSource.h"

using namespace pintalux::test;

namespace {

QImage freeze() { return finished(ScreenCapture::freezeAllDisplays()).displays.value(0).image; }

// A window of this very process, in one colour.
class OwnWindow : public QWidget {
public:
    OwnWindow(const QRect& geometry, QColor color, Qt::WindowFlags flags = {})
        : QWidget(nullptr, flags)
    {
        setPalette(color);
        setGeometry(geometry);
        show();
        waitUntil([&] { return isActiveWindow() || flags.testFlag(Qt::BypassWindowManagerHint); });
        letPass(250);
    }
};

// Every test runs bare and under a compositor that draws shadows.
class CaptureTest : public testing::TestWithParam<bool> {
protected:
    void SetUp() override
    {
        if (GetParam())
            compositor = &desktop().startCompositor();
    }
    void TearDown() override
    {
        if (compositor)
            desktop().stop(*compositor);
    }

private:
    QProcess* compositor = nullptr;
};

INSTANTIATE_TEST_SUITE_P(Desktop, CaptureTest, testing::Bool(),
    [](const auto& tested) { return tested.param ? "Composited" : "Bare"; });

} // namespace

TEST_P(CaptureTest, AFreezeIsWhatAnotherProgramSeesPixelForPixelAndOpaque)
{
    const DemoWindow demo(u"Informe"_s, u"520x400+90+60"_s, u"#3B6FE0"_s);
    const auto image = freeze();
    EXPECT_EQ(image.size(), QSize(1280, 800));
    EXPECT_EQ(differingPixels(image, pictureByOthers()), 0);
    EXPECT_EQ(image.colorSpace(), QColorSpace(QColorSpace::SRgb));
    EXPECT_EQ(countPixels(image,
                  [&](int x, int y) {
                      return reinterpret_cast<const QRgb*>(image.constScanLine(y))[x] >> 24 != 0xff;
                  }),
        0);
}

TEST_P(CaptureTest, ACoveredWindowIsTakenWholeWithItsDecorationAndWithoutItsShadow)
{
    const DemoWindow below(u"Debajo"_s, u"300x220+100+100"_s, u"#2E9E6B"_s);
    const DemoWindow above(u"Encima"_s, u"500x400+600+300"_s, u"#D9480F"_s);
    const auto frozen = finished(ScreenCapture::freezeAllDisplays());
    const auto candidate = candidateOf(frozen, below.processId());
    ASSERT_TRUE(candidate);
    EXPECT_GT(candidate->frame.height(), 220) << "the title bar belongs to it";
    const auto seen = frozen.displays[0].image.copy(candidate->frame.toRect());

    desktop().run(u"xdotool"_s, {u"windowmove"_s, u"--sync"_s, above.id(), u"40"_s, u"40"_s});
    letPass(250);
    ASSERT_GT(differingPixels(freeze().copy(candidate->frame.toRect()), seen), 10000) << "it is not covered";

    const auto result = finished(ScreenCapture::capture(candidate->window));
    EXPECT_EQ(result.image.size(), candidate->frame.size());
    EXPECT_EQ(differingPixels(result.image, seen), 0);
    EXPECT_EQ(result.pixelScale, 1);
}

TEST_P(CaptureTest, OwnWindowsAreNotInThePictureAndComeBackWithTheirFocus)
{
    const DemoWindow demo(u"Fondo"_s, u"700x500+80+80"_s, u"#6741D9"_s);
    const auto without = freeze();
    OwnWindow window({200, 200, 300, 200}, Qt::red);
    OwnWindow message({600, 300, 120, 60}, Qt::green, Qt::ToolTip | Qt::BypassWindowManagerHint);
    message.setMask(QRegion(10, 0, 100, 60));
    QGuiApplication::sync(); // the toolkit sends a mask only with its next events
    letPass(150);
    ASSERT_EQ(pictureByOthers().pixelColor(350, 300), QColor(Qt::red));
    ASSERT_EQ(pictureByOthers().pixelColor(650, 330), QColor(Qt::green));

    const auto frozen = freeze();
    // The title bar of the demonstration window is that of one without focus now.
    const QRect client(85, 110, 690, 460);
    EXPECT_EQ(differingPixels(frozen.copy(client), without.copy(client)), 0);

    EXPECT_TRUE(window.isActiveWindow());
    EXPECT_TRUE(waitUntil([] {
        const auto now = pictureByOthers();
        return now.pixelColor(350, 300) == QColor(Qt::red) && now.pixelColor(650, 330) == QColor(Qt::green);
    }));
    EXPECT_NE(pictureByOthers().pixelColor(603, 330), QColor(Qt::green)) << "its own shape must come back";
}

TEST_P(CaptureTest, ATranslucentWindowKeepsItsAlpha)
{
    QWidget window(nullptr, Qt::FramelessWindowHint);
    window.setAttribute(Qt::WA_TranslucentBackground);
    window.setGeometry(300, 200, 200, 150);
    QWidget veil(&window);
    veil.setAutoFillBackground(true);
    veil.setPalette(QColor(255, 0, 0, 128));
    veil.setGeometry(20, 20, 160, 110);
    window.show();
    letPass(400);

    WindowInfo info;
    info.id = window.winId();
    const auto result = finished(ScreenCapture::capture(info));
    ASSERT_EQ(result.image.format(), QImage::Format_ARGB32_Premultiplied);
    ASSERT_EQ(result.image.size(), QSize(200, 150));
    EXPECT_EQ(result.image.pixelColor(5, 5).alpha(), 0);
    EXPECT_EQ(result.image.pixelColor(100, 75), QColor(255, 0, 0, 128));
}

TEST(WindowList, OrderTitlesAndLeftOutWindowsAreThoseOfTheDesktop)
{
    const DemoWindow first(u"Informe: Q1/Q2 — año 2026"_s, u"400x300+50+50"_s, u"#3B6FE0"_s);
    const DemoWindow second(u"Ñandú"_s, u"400x300+200+150"_s, u"#2E9E6B"_s);
    const DemoWindow third(u"Última"_s, u"400x300+350+250"_s, u"#D9480F"_s);
    const DemoWindow narrow(u"Estrecha"_s, u"38x200+900+100"_s, u"#000000"_s);
    const DemoWindow minimized(u"Guardada"_s, u"300x200+700+500"_s, u"#000000"_s);
    const DemoWindow raised(
        u"Siempre visible"_s, u"300x200+800+500"_s, u"#000000"_s, desktop(), {u"--above"_s});
    const OwnWindow own({600, 100, 200, 200}, Qt::red);
    desktop().run(u"xdotool"_s, {u"windowminimize"_s, u"--sync"_s, minimized.id()});
    desktop().run(u"xdotool"_s, {u"windowactivate"_s, u"--sync"_s, first.id()});
    letPass(250);

    const auto frozen = finished(ScreenCapture::freezeAllDisplays());
    QStringList titles;
    for (const auto& candidate : frozen.windows)
        titles.append(candidate.title);
    EXPECT_EQ(titles.join(u'|').toStdString(),
        "Demostración — Siempre visible|Demostración — Informe: Q1/Q2 — año 2026|Demostración — Última|"
        "Demostración — Ñandú");
    EXPECT_EQ(candidateOf(frozen, second.processId())->frame.topLeft(), QPointF(200, 150));
}

TEST(WindowList, AShadowThatAWindowDrawsItselfBelongsNeitherToItsFrameNorToItsPicture)
{
    const DemoWindow demo(u"Con sombra"_s, u"400x300+300+200"_s, u"#3B6FE0"_s);
    const auto before = candidateOf(finished(ScreenCapture::freezeAllDisplays()), demo.processId());
    ASSERT_TRUE(before);
    desktop().run(u"xprop"_s,
        {u"-id"_s, demo.id(), u"-f"_s, u"_GTK_FRAME_EXTENTS"_s, u"32c"_s, u"-set"_s, u"_GTK_FRAME_EXTENTS"_s,
            u"10, 20, 30, 40"_s}); // left, right, top, bottom
    const auto frozen = finished(ScreenCapture::freezeAllDisplays());
    const auto after = candidateOf(frozen, demo.processId());
    ASSERT_TRUE(after);
    EXPECT_EQ(after->frame, before->frame.adjusted(10, 30, -20, -40));
    const auto picture = finished(ScreenCapture::capture(after->window)).image;
    EXPECT_EQ(differingPixels(picture, frozen.displays[0].image.copy(after->frame.toRect())), 0);
}

TEST(WindowList, AWindowThatWentAwayMeanwhileIsAnErrorToTell)
{
    DemoWindow demo(u"Efímera"_s, u"300x200+100+100"_s, u"#3B6FE0"_s);
    const auto candidate = candidateOf(finished(ScreenCapture::freezeAllDisplays()), demo.processId());
    ASSERT_TRUE(candidate);
    const auto sentence
        = [&] { return sentenceOf([&] { finished(ScreenCapture::capture(candidate->window)); }); };
    desktop().run(u"xdotool"_s, {u"windowminimize"_s, u"--sync"_s, demo.id()});
    const QString gone = u"La ventana ya no está en la pantalla."_s;
    EXPECT_TRUE(waitUntil([&] { return sentence() == gone; })) << "minimised";
    demo.end();
    EXPECT_TRUE(waitUntil([&] { return sentence() == gone; })) << "closed";
}

TEST(DisplayServer, WhenItIsMissingOrDiesCapturingGivesAnErrorAndTheNextServerWorks)
{
    const QString lost = u"No hay conexión con el servidor gráfico."_s;
    X11ScreenSource missing(QByteArrayLiteral(":nobody"));
    EXPECT_EQ(sentenceOf([&] { missing.shareableContent({}); }), lost);

    DisplaySession session({.size = {640, 480}, .windowManager = false});
    X11ScreenSource dying(session.display());
    const auto content = dying.shareableContent({{u"screen"_s, {0, 0, 640, 480}, 1}});
    ASSERT_EQ(content.screens.size(), 1);
    EXPECT_EQ(dying.screenshot(content.screens[0]).image.size(), QSize(640, 480));
    session.end();
    EXPECT_EQ(sentenceOf([&] { dying.screenshot(content.screens[0]); }), lost);
    EXPECT_EQ(sentenceOf([&] { dying.hideOwnWindows(); }), lost);
    EXPECT_EQ(sentenceOf([&] { dying.shareableContent({}); }), lost);
}

// Two monitors side by side, each with a scale of its own; another process freezes them.
TEST(MixedScales, EveryScreenKeepsItsNativePixelsAndItsScale)
{
    const struct {
        int depth;
        const char* factors;
        const char* screens; ///< name, frame in points, scale, what a panel of 100 pixels leaves
        double rightScale;
    } table[] = {
        {24, "IZQ=1;DER=2", "IZQ 0 0 801 602 1 visible 0 0 801 602|DER 801 0 400 301 2 visible 801 0 400 251",
            2},
        {24, "IZQ=1.25;DER=1.5",
            "IZQ 0 0 641 482 1.25 visible 0 0 641 482|DER 801 0 533 401 1.5 visible 801 0 533 334", 1.5},
        {16, "IZQ=1;DER=1", "IZQ 0 0 801 602 1 visible 0 0 801 602|DER 801 0 800 602 1 visible 801 0 800 502",
            1},
    };
    const QRect left(0, 0, 801, 602);
    const QRect right(801, 0, 800, 602);
    for (const auto& row : table) {
        SCOPED_TRACE(testing::Message() << row.factors << " depth " << row.depth);
        DisplaySession session({.size = {1601, 602},
            .depth = row.depth,
            .monitors = {{u"IZQ"_s, u"801/200x602/150+0+0"_s, u"screen"_s},
                {u"DER"_s, u"800/200x602/150+801+0"_s, u"none"_s}},
            .scaleFactors = QLatin1String(row.factors)});
        const DemoWindow demo(u"Derecha"_s, u"200x150+901+80"_s, u"#D9480F"_s, session);
        session.run(u"xprop"_s,
            {u"-id"_s, demo.id(), u"-f"_s, u"_NET_WM_STRUT_PARTIAL"_s, u"32c"_s, u"-set"_s,
                u"_NET_WM_STRUT_PARTIAL"_s, u"0,0,0,100,0,0,0,0,0,0,801,1600"_s});
        QTemporaryDir folder;
        auto lines = QString::fromUtf8(session.run(QStringLiteral(PINTALUX_FREEZE_SCREENS), {folder.path()}))
                         .trimmed()
                         .split(u'\n');
        const auto window = lines.takeLast().split(u' ');
        EXPECT_EQ(lines.join(u'|').toStdString(), row.screens);

        const auto all = pictureByOthers(session);
        EXPECT_EQ(differingPixels(QImage(folder.filePath(u"IZQ.png"_s)), all.copy(left)), 0);
        EXPECT_EQ(differingPixels(QImage(folder.filePath(u"DER.png"_s)), all.copy(right)), 0);

        ASSERT_EQ(window.value(0), u"window");
        EXPECT_EQ(window[5].toDouble(), row.rightScale);
        const auto client = session.run(u"xwininfo"_s, {u"-id"_s, demo.id()});
        const auto native = [&](const char* key) {
            return client.mid(client.indexOf(key)).split('\n')[0].split(':').value(1).trimmed().toInt();
        };
        // The manager's side borders are one native pixel wide.
        EXPECT_NEAR(right.left() + (window[1].toDouble() - 801) * row.rightScale,
            native("Absolute upper-left X") - 1, 0.01);
        EXPECT_NEAR(window[3].toDouble() * row.rightScale, native("Width") + 2, 0.01);
    }
}
