// SPDX-License-Identifier: MIT
#include "render/export/Clipboard.h"

#include "Pictures.h"
#include "render/export/Exporter.h"

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

} // namespace

TEST(Clipboard, AnotherProgramGetsThePngToTheByteAndTheSamePixelsAsTiff)
{
    // Large enough to be handed over in pieces, with noise and transparency.
    auto image = test::noise({1200, 900}).convertToFormat(QImage::Format_ARGB32);
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(600, 0, 600, 900, QColor(200, 90, 31, 140));
    painter.end();
    Clipboard::copy(image, 2);

    const auto offered = targets();
    const auto png = offered.indexOf(u"image/png"_s), tiff = offered.indexOf(u"image/tiff"_s);
    EXPECT_GE(png, 0) << offered.join(u' ').toStdString();
    EXPECT_GT(tiff, png) << "who takes the first that it knows must get the PNG";
    EXPECT_EQ(pasted(u"image/png"_s), Exporter::pngData(image, 2));

    const auto pastedTiff = QImage::fromData(pasted(u"image/tiff"_s).value_or(""), "TIFF")
                                .convertToFormat(QImage::Format_ARGB32);
    ASSERT_EQ(pastedTiff.size(), image.size());
    constexpr int rounding = 4; // of premultiplied colours
    EXPECT_EQ(test::difference(image, pastedTiff, rounding), QRect());
    EXPECT_EQ(test::difference(image.copy(0, 0, 600, 900), pastedTiff.copy(0, 0, 600, 900)), QRect());
    EXPECT_NEAR(pastedTiff.dotsPerMeterX() * 0.0254, 144, 0.1);
}

TEST(Clipboard, APictureThatCannotBeEncodedLeavesWhatWasThere)
{
    Clipboard::copy(u"antes ñ €"_s);
    Clipboard::copy(QImage(), 1);
    EXPECT_EQ(pasted(u"UTF8_STRING"_s), u"antes ñ €"_s.toUtf8());
    EXPECT_FALSE(targets().contains(u"image/png"_s)) << "text comes alone";
}
