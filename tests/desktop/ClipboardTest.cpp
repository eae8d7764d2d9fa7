// SPDX-License-Identifier: MIT
#include "render/export/Clipboard.h"

#include "render/export/Exporter.h"

#include <QApplication>
#include <QClipboard>
#include <QColorSpace>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QProcess>
#include <QTimer>

using namespace Qt::StringLiterals;

using namespace pintalux;

namespace {

/// What another program gets when it pastes `target`; none when it gets nothing. Our own events are served
/// meanwhile, for it is this process that has to answer.
std::optional<QByteArray> pasted(const QString& target)
{
    QProcess reader;
    QEventLoop loop;
    QObject::connect(&reader, &QProcess::finished, &loop, &QEventLoop::quit);
    QTimer::singleShot(10'000, &loop, &QEventLoop::quit);
    reader.start(u"xclip"_s, {u"-selection"_s, u"clipboard"_s, u"-o"_s, u"-t"_s, target});
    if (!reader.waitForStarted())
        throw std::runtime_error("xclip does not start");
    loop.exec();
    if (reader.state() != QProcess::NotRunning) {
        ADD_FAILURE() << "no answer for " << target.toStdString();
        reader.kill();
        reader.waitForFinished();
        return std::nullopt;
    }
    return reader.exitCode() == 0 ? std::optional(reader.readAllStandardOutput()) : std::nullopt;
}

QStringList targets() { return QString::fromLatin1(pasted(u"TARGETS"_s).value_or("")).split(u'\n'); }

/// Large enough to be handed over in pieces, with edges, transparency and noise.
QImage picture()
{
    QImage image(1200, 900, QImage::Format_ARGB32);
    quint32 state = 1;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            state = state * 1664525 + 1013904223;
            image.setPixel(
                x, y, x < 600 ? (0xFF000000 | state >> 8) : qRgba(x % 256, y % 256, 90, 40 + y % 200));
        }
    return image;
}

/// The largest difference of any component of any pixel.
int largestDifference(const QImage& one, const QImage& other)
{
    const auto a = one.convertToFormat(QImage::Format_ARGB32),
               b = other.convertToFormat(QImage::Format_ARGB32);
    int largest = 0;
    for (int y = 0; y < a.height(); ++y)
        for (qsizetype i = 0; i < a.width() * 4; ++i)
            largest = std::max(largest, std::abs(a.constScanLine(y)[i] - b.constScanLine(y)[i]));
    return largest;
}

double dotsPerInch(const QImage& image) { return image.dotsPerMeterX() * 0.0254; }

} // namespace

TEST(Clipboard, AnotherProgramGetsThePngToTheByteAndTheSamePixelsAsTiff)
{
    const auto image = picture();
    Clipboard::copy(image, 2);

    const auto offered = targets();
    const auto png = offered.indexOf(u"image/png"_s), tiff = offered.indexOf(u"image/tiff"_s);
    EXPECT_GE(png, 0) << offered.join(u' ').toStdString();
    EXPECT_GT(tiff, png) << "who takes the first that it knows must get the PNG";
    EXPECT_EQ(pasted(u"image/png"_s), Exporter::pngData(image, 2));

    const auto pastedTiff = QImage::fromData(pasted(u"image/tiff"_s).value_or(""), "TIFF");
    ASSERT_EQ(pastedTiff.size(), image.size());
    // The TIFF holds premultiplied colours, which round.
    EXPECT_EQ(largestDifference(image.copy(0, 0, 600, 900), pastedTiff.copy(0, 0, 600, 900)), 0);
    EXPECT_LE(largestDifference(image, pastedTiff), 4);
    EXPECT_NEAR(dotsPerInch(pastedTiff), 144, 0.1);
}

TEST(Clipboard, APictureThatCannotBeEncodedLeavesWhatWasThere)
{
    Clipboard::copy(u"antes ñ €"_s);
    Clipboard::copy(QImage(), 1);
    EXPECT_EQ(pasted(u"UTF8_STRING"_s), u"antes ñ €"_s.toUtf8());
    EXPECT_FALSE(targets().contains(u"image/png"_s)) << "text comes alone";
}
