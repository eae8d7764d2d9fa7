// SPDX-License-Identifier: MIT

// The editor as a person uses it: the real executable, real mouse and keys, the file and the clipboard read
// back.

#include "ProgramStage.h"
#include "render/export/Exporter.h"

using namespace pintalux::test;

namespace {

/// A colour that stands in the picture's corner and nowhere else on this desktop.
constexpr QRgb cornerColor = 0xFFC81E96;

class EditorTest : public ProgramStage {
protected:
    EditorTest()
        : ProgramStage({{u"autoSave"_s, false}, {u"afterCapture"_s, u"editor"_s},
            {u"arrowStyle"_s, u"filled"_s}, {u"handwritten"_s, false}, {u"calloutText"_s, false}})
    {
        for (int i = 0; i < 8; ++i)
            photo.setPixel(i, 0, cornerColor);
        photo.save(home.filePath(u"foto.png"_s));
        desktop().run(u"setxkbmap"_s, {u"es"_s});
        environment.insert(u"LC_ALL"_s, u"C.UTF-8"_s); // for what the accent keys compose
    }

    /// Opens the picture and waits until it is on the screen.
    void openPhoto()
    {
        start(program, {u"--open"_s, home.filePath(u"foto.png"_s)});
        ASSERT_TRUE(waitUntil([&] { return findPhoto(); }));
        ASSERT_TRUE(waitUntil([] { return activeTitle() == u"Pintalux"; }));
        letPass(300); // the manager names the active window before it has the keyboard
    }

    bool findPhoto()
    {
        const auto screen = pictureByOthers();
        for (int y = 0; y < screen.height(); ++y)
            for (int x = 0; x + 8 < screen.width(); ++x)
                if (screen.pixel(x, y) == cornerColor && screen.pixel(x + 7, y) == cornerColor) {
                    origin = {x, y};
                    return true;
                }
        return false;
    }

    /// What the window shows of the picture.
    QImage shown() const { return pictureByOthers().copy(QRect(origin, photo.size())); }

    bool comesToShow(const QImage& expected) const
    {
        return waitUntil([&] { return differingPixels(shown(), expected) == 0; });
    }

    static void keys(const QString& names)
    {
        desktop().run(u"xdotool"_s, QStringList{u"key"_s, u"--delay"_s, u"30"_s} + names.split(u' '));
    }

    QStringList pointerTo(QPoint documentPixel) const
    {
        const auto at = origin + documentPixel;
        return {u"mousemove"_s, QString::number(at.x()), QString::number(at.y()), u"sleep"_s, u"0.05"_s};
    }

    void drag(QPoint from, QPoint to) const
    {
        const QStringList press{u"mousedown"_s, u"1"_s}, release{u"mouseup"_s, u"1"_s};
        desktop().run(
            u"xdotool"_s, pointerTo(from) + press + pointerTo((from + to) / 2) + pointerTo(to) + release);
    }

    void click(QPoint at) const
    {
        desktop().run(u"xdotool"_s, pointerTo(at) + QStringList{u"click"_s, u"1"_s});
    }

    static QString activeTitle()
    {
        return QString::fromUtf8(desktop().run(u"xdotool"_s, {u"getactivewindow"_s, u"getwindowname"_s}))
            .trimmed();
    }

    /// The middle of the mark at the left of the bar; on the screen.
    static QPoint markInBar()
    {
        const auto told = QString::fromUtf8(desktop().run(u"xwininfo"_s, {u"-id"_s, activeWindow()}));
        const auto number
            = [&](const QString& label) { return told.section(label, 1).section(u'\n', 0, 0).toInt(); };
        return {number(u"Absolute upper-left X:"_s) + 24, number(u"Absolute upper-left Y:"_s) + 48};
    }

    /// Windows that task bars and switchers show.
    static QString listedWindows()
    {
        return QString::fromUtf8(desktop().run(u"xprop"_s, {u"-root"_s, u"_NET_CLIENT_LIST"_s}))
            .section(u'#', 1)
            .trimmed();
    }

    /// The photograph as it must look with marks of the settings' style.
    QImage drawn(QList<Annotation> marks) const
    {
        for (auto& mark : marks) {
            mark.color = Qt::red;
            mark.lineWidth = 4;
            mark.fontSize = 25.4;
        }
        EffectCache cache;
        return Exporter::render({photo, marks, 1}, {}, cache).convertToFormat(QImage::Format_RGB32);
    }

    QImage photo = plain({600, 280}, QColor(0xDD, 0xE6, 0xF2));
    QPoint origin; ///< of the picture on the screen
};

} // namespace

TEST_F(EditorTest, MarksDrawnByHandAreInTheFileJustAsTheWindowShowsThem)
{
    openPhoto();
    drag({60, 60}, {220, 140});
    keys(u"r"_s);
    drag({300, 40}, {420, 130});
    keys(u"t"_s);
    click({100, 180});
    keys(u"questiondown dead_acute a ntilde o s question Return"_s);
    keys(u"n"_s);
    click({500, 200});
    keys(u"Escape"_s); // chooses nothing, so that no handles show

    const auto expected = drawn({{.kind = AnnotationKind::arrow,
                                     .start = {60, 60},
                                     .end = {220, 140},
                                     .arrowStyle = ArrowStyle::filled},
        {.kind = AnnotationKind::rectangle, .start = {300, 40}, .end = {420, 130}},
        {.kind = AnnotationKind::text, .start = {100, 180}, .end = {100, 180}, .text = u"¿áños?"_s},
        {.kind = AnnotationKind::step, .start = {500, 200}, .end = {500, 200}, .number = 1}});
    EXPECT_TRUE(comesToShow(expected)) << differingPixels(shown(), expected);

    keys(u"ctrl+z ctrl+z ctrl+z ctrl+z"_s);
    EXPECT_TRUE(comesToShow(photo)) << "four marks, four steps";
    keys(u"ctrl+shift+z ctrl+shift+z ctrl+shift+z ctrl+shift+z"_s);
    EXPECT_TRUE(comesToShow(expected));

    keys(u"ctrl+shift+s"_s);
    EXPECT_EQ(differingPixels(saved(), expected), 0);
    EXPECT_TRUE(savedName.startsWith(u"Pintalux foto 2")) << savedName.toStdString();
}

TEST_F(EditorTest, AWindowClosedWhileTypingLosesNothing)
{
    openPhoto();
    keys(u"t"_s);
    click({100, 100});
    keys(u"h o l a"_s);
    ASSERT_TRUE(waitUntil([&] { return differingPixels(shown(), photo) > 100; }));
    keys(u"alt+F4"_s); // the window manager's way
    const auto expected
        = drawn({{.kind = AnnotationKind::text, .start = {100, 100}, .end = {100, 100}, .text = u"hola"_s}});
    EXPECT_EQ(differingPixels(copied(), expected), 0);
}

TEST_F(EditorTest, ThePictureIsDraggedFromTheBarIntoAnotherProgramAsAFile)
{
    auto& target = desktop().start(QStringLiteral(PINTALUX_DROP_TARGET), {u"300x60+40+735"_s});
    openPhoto();
    keys(u"r"_s);
    drag({300, 40}, {420, 130});
    ASSERT_TRUE(waitUntil([&] { return differingPixels(shown(), photo) > 100; }));
    const auto expected = shown();
    const auto mark = markInBar();
    // Let go too early, on the canvas, it is not the picture's own to take.
    for (const auto& drop : {origin + QPoint(200, 200), QPoint(190, 765)}) {
        QStringList steps{
            u"mousemove"_s, QString::number(mark.x()), QString::number(mark.y()), u"mousedown"_s, u"1"_s};
        for (int i = 1; i <= 8; ++i) {
            const auto at = mark + (drop - mark) * i / 8;
            steps << u"mousemove"_s << QString::number(at.x()) << QString::number(at.y()) << u"sleep"_s
                  << u"0.08"_s;
        }
        // What it is let go over must have said that it takes it, which on a busy machine it says late.
        desktop().run(u"xdotool"_s, steps + QStringList{u"sleep"_s, u"1"_s, u"mouseup"_s, u"1"_s});
    }
    QByteArray line;
    ASSERT_TRUE(waitUntil([&] { return !(line = target.readLine()).isEmpty(); }));
    const auto path = QString::fromUtf8(line).section(u'\t', 0, 0);
    EXPECT_TRUE(QFileInfo(path).fileName().startsWith(u"Pintalux foto 2")) << path.toStdString();
    EXPECT_EQ(differingPixels(QImage(path).convertToFormat(QImage::Format_RGB32), expected), 0);
}

TEST_F(EditorTest, ACaptureOpensInFrontWithTheFocusAndLeavesNoWindowBehind)
{
    const DemoWindow other(u"Otra"_s, u"700x500+200+120"_s, u"#3B6FE0"_s);
    const auto listed = listedWindows();
    ASSERT_EQ(activeTitle(), u"Otra");
    start(program, {u"--capture"_s, u"fullScreen"_s});
    ASSERT_TRUE(waitUntil([] { return activeTitle() == u"Pintalux"; }, 10000));
    EXPECT_NE(listedWindows(), listed);
    keys(u"ctrl+w"_s);
    EXPECT_TRUE(waitUntil([&] { return listedWindows() == listed; }));
    EXPECT_TRUE(waitUntil([] { return activeTitle() == u"Otra"; })) << activeTitle().toStdString();
}
