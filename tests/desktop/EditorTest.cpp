// SPDX-License-Identifier: MIT

// The editor as a person uses it: the real executable, real mouse and keys, the file and the clipboard read
// back.

#include "Desktop.h"
#include "platform/base/Files.h"
#include "platform/graphics/Color.h"
#include "render/export/Exporter.h"

#include <QClipboard>
#include <QDir>
#include <QDropEvent>
#include <QGuiApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMimeData>
#include <QTemporaryDir>
#include <QUrl>
#include <QWidget>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace pintalux;
using namespace pintalux::test;

namespace {

/// A colour that stands in the picture's corner and nowhere else on this desktop.
constexpr QRgb cornerColor = 0xFFC81E96;

/// A window of another program that takes what is dropped on it.
class DropTarget : public QWidget {
public:
    DropTarget()
    {
        setWindowFlags(Qt::WindowStaysOnTopHint | Qt::FramelessWindowHint);
        setGeometry(40, 735, 300, 60);
        setAcceptDrops(true);
        show();
    }

    QList<QUrl> addresses;
    QByteArray png;

protected:
    void dragEnterEvent(QDragEnterEvent* event) override { event->acceptProposedAction(); }
    void dropEvent(QDropEvent* event) override
    {
        addresses = event->mimeData()->urls();
        png = event->mimeData()->data(u"image/png"_s);
        event->acceptProposedAction();
    }
};

class EditorTest : public testing::Test {
protected:
    EditorTest()
        : photo(600, 280, QImage::Format_RGB32)
    {
        photo.fill(QColor(0xDD, 0xE6, 0xF2));
        for (int i = 0; i < 8; ++i)
            photo.setPixel(i, 0, cornerColor);
    }

    void SetUp() override
    {
        desktop().run(u"setxkbmap"_s, {u"es"_s});
        const QJsonObject settings{{u"autoCopy"_s, true}, {u"afterCapture"_s, u"editor"_s},
            {u"arrowStyle"_s, u"filled"_s}, {u"handwritten"_s, false}, {u"calloutText"_s, false},
            {u"saveFolder"_s, captures()}, {u"hasLaunchedBefore"_s, true}};
        makeFolders(home.filePath(u"config/pintalux"_s));
        replaceFile(home.filePath(u"config/pintalux/defaults.json"_s), QJsonDocument(settings).toJson());
        QGuiApplication::clipboard()->setText(u"antes"_s);
        ASSERT_TRUE(photo.save(home.filePath(u"foto.png"_s)));
    }

    void TearDown() override
    {
        desktop().run(u"setxkbmap"_s, {u"us"_s});
        ASSERT_EQ(program.state(), QProcess::Running)
            << "crashed: " << (program.exitStatus() == QProcess::CrashExit);
        program.terminate();
        EXPECT_TRUE(program.waitForFinished(patience));
    }

    void start(const QStringList& arguments)
    {
        auto environment = desktop().environment();
        environment.insert(u"XDG_CONFIG_HOME"_s, home.filePath(u"config"_s));
        environment.insert(u"LC_ALL"_s, u"C.UTF-8"_s); // for what the accent keys compose
        program.setProcessEnvironment(environment);
        program.start(QString::fromUtf8(PINTALUX_PROGRAM), arguments);
    }

    /// Opens the picture and waits until it is on the screen.
    void openPhoto()
    {
        start({u"--open"_s, home.filePath(u"foto.png"_s)});
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
        const auto id = QString::fromUtf8(desktop().run(u"xdotool"_s, {u"getactivewindow"_s})).trimmed();
        const auto told = QString::fromUtf8(desktop().run(u"xwininfo"_s, {u"-id"_s, id}));
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

    static QImage copied()
    {
        const auto* offered = QGuiApplication::clipboard()->mimeData();
        return QImage::fromData(offered->data(u"image/png"_s)).convertToFormat(QImage::Format_RGB32);
    }

    QString captures() const { return home.filePath(u"capturas"_s); }

    QTemporaryDir home;
    QImage photo;
    QPoint origin; ///< of the picture on the screen
    QProcess program;
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

    Document document{photo, {}, 1};
    const Annotation look{.color = QColor(255, 0, 0), .lineWidth = 4, .fontSize = 25.4};
    const auto mark = [&](AnnotationKind kind, QPointF from, QPointF to) {
        auto made = look;
        made.kind = kind;
        made.start = from;
        made.end = to;
        document.annotations.append(made);
        return &document.annotations.last();
    };
    mark(AnnotationKind::arrow, {60, 60}, {220, 140})->arrowStyle = ArrowStyle::filled;
    mark(AnnotationKind::rectangle, {300, 40}, {420, 130});
    mark(AnnotationKind::text, {100, 180}, {100, 180})->text = u"¿áños?"_s;
    mark(AnnotationKind::step, {500, 200}, {500, 200})->number = 1;
    EffectCache cache;
    const auto expected = Exporter::render(document, {}, cache).convertToFormat(QImage::Format_RGB32);
    EXPECT_TRUE(comesToShow(expected)) << differingPixels(shown(), expected);

    keys(u"ctrl+z ctrl+z ctrl+z ctrl+z"_s);
    EXPECT_TRUE(comesToShow(photo)) << "four marks, four steps";
    keys(u"ctrl+shift+z ctrl+shift+z ctrl+shift+z ctrl+shift+z"_s);
    EXPECT_TRUE(comesToShow(expected));

    keys(u"ctrl+shift+s"_s);
    QStringList names;
    ASSERT_TRUE(waitUntil([&] { return !(names = QDir(captures()).entryList({u"*.png"_s})).isEmpty(); }));
    EXPECT_TRUE(names[0].startsWith(u"Pintalux foto 2")) << names[0].toStdString();
    const QImage saved(QDir(captures()).filePath(names[0]));
    EXPECT_EQ(differingPixels(saved.convertToFormat(QImage::Format_RGB32), expected), 0);
}

TEST_F(EditorTest, AWindowClosedWhileTypingLosesNothing)
{
    openPhoto();
    keys(u"t"_s);
    click({100, 100});
    keys(u"h o l a"_s);
    ASSERT_TRUE(waitUntil([&] { return differingPixels(shown(), photo) > 100; }));
    keys(u"alt+F4"_s); // the window manager's way
    ASSERT_TRUE(waitUntil([&] { return copied().size() == photo.size(); }));

    Document document{photo, {}, 1};
    document.annotations.append({.kind = AnnotationKind::text,
        .start = {100, 100},
        .end = {100, 100},
        .color = QColor(255, 0, 0),
        .lineWidth = 4,
        .text = u"hola"_s,
        .fontSize = 25.4});
    EffectCache cache;
    const auto expected = Exporter::render(document, {}, cache).convertToFormat(QImage::Format_RGB32);
    EXPECT_EQ(differingPixels(copied(), expected), 0);
}

TEST_F(EditorTest, ThePictureIsDraggedFromTheBarIntoAnotherProgramAsAFile)
{
    DropTarget target;
    openPhoto();
    keys(u"r"_s);
    drag({300, 40}, {420, 130});
    ASSERT_TRUE(waitUntil([&] { return differingPixels(shown(), photo) > 100; }));
    const auto expected = shown();
    const auto mark = markInBar();
    const QPoint drop = target.geometry().center();
    QStringList steps{
        u"mousemove"_s, QString::number(mark.x()), QString::number(mark.y()), u"mousedown"_s, u"1"_s};
    for (int i = 1; i <= 8; ++i) {
        const auto at = mark + (drop - mark) * i / 8;
        steps << u"mousemove"_s << QString::number(at.x()) << QString::number(at.y()) << u"sleep"_s
              << u"0.08"_s;
    }
    // Not waited for: this process must answer while it runs.
    desktop().start(u"xdotool"_s, steps + QStringList{u"sleep"_s, u"0.2"_s, u"mouseup"_s, u"1"_s});
    ASSERT_TRUE(waitUntil([&] { return !target.addresses.isEmpty(); }));
    const auto path = target.addresses.value(0).toLocalFile();
    EXPECT_TRUE(QFileInfo(path).fileName().startsWith(u"Pintalux foto 2")) << path.toStdString();
    EXPECT_EQ(differingPixels(QImage(path).convertToFormat(QImage::Format_RGB32), expected), 0);
    EXPECT_EQ(QImage::fromData(target.png).size(), photo.size());
}

TEST_F(EditorTest, ACaptureOpensInFrontWithTheFocusAndLeavesNoWindowBehind)
{
    const DemoWindow other(u"Otra"_s, u"700x500+200+120"_s, u"#3B6FE0"_s);
    const auto listed = listedWindows();
    ASSERT_EQ(activeTitle(), u"Otra");
    start({u"--capture"_s, u"fullScreen"_s});
    ASSERT_TRUE(waitUntil([] { return activeTitle() == u"Pintalux"; }, 10000));
    EXPECT_NE(listedWindows(), listed);
    keys(u"ctrl+w"_s);
    EXPECT_TRUE(waitUntil([&] { return listedWindows() == listed; }));
    EXPECT_TRUE(waitUntil([] { return activeTitle() == u"Otra"; })) << activeTitle().toStdString();
}
