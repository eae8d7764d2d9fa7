// SPDX-License-Identifier: MIT
#include "platform/image/PngEncoder.h"

#include "Pictures.h"
#include "Stage.h"
#include "platform/image/DeflateSegment.h"

#include <libdeflate.h>

namespace pintalux {
namespace {

using test::noise;

/// Half like a screen, flat with some writing, half like a photograph.
QImage mixed(QSize size, QImage::Format format)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(QColor(240, 240, 245, 200));
    QPainter painter(&image);
    for (int y = 0; y < size.height() / 2; y += 20)
        painter.drawText(3, y, u"Lorem ipsum dolor sit amet"_s);
    painter.end();
    QRandomGenerator random(3);
    for (int y = size.height() / 2; y < size.height(); ++y)
        for (int x = 0; x < size.width(); ++x) {
            const int light = 128 + int(90 * std::sin(x / 31.) * std::cos(y / 17.)) + random.bounded(5);
            image.setPixel(x, y, qRgb(light, light / 2 + random.bounded(3), 255 - light));
        }
    return image.convertToFormat(format);
}

struct Chunk {
    QByteArray type;
    QByteArray data;
};

/// The chunks of a file whose checksums and lengths are right; fails the test otherwise.
QList<Chunk> chunks(const QByteArray& file)
{
    QList<Chunk> list;
    EXPECT_TRUE(file.startsWith("\x89PNG\r\n\x1a\n"));
    qsizetype at = 8;
    while (at + 12 <= file.size()) {
        const auto length = qFromBigEndian<quint32>(file.constData() + at);
        list.append({file.mid(at + 4, 4), file.mid(at + 8, length)});
        EXPECT_EQ(qFromBigEndian<quint32>(file.constData() + at + 8 + length),
            libdeflate_crc32(0, file.constData() + at + 4, length + 4))
            << list.last().type.constData();
        at += length + 12;
    }
    EXPECT_EQ(at, file.size());
    return list;
}

QByteArray dataOf(const QList<Chunk>& list, const char* type)
{
    QByteArray data;
    for (const Chunk& chunk : list)
        if (chunk.type == type)
            data += chunk.data;
    return data;
}

/// What every reader must find: the pixels without premultiplication.
QImage expectedPixels(const QImage& image) { return image.convertToFormat(QImage::Format_RGBA8888); }

void expectSamePixels(const QImage& original, const std::string& what)
{
    const auto file = PngEncoder::encode(original, 1);
    ASSERT_TRUE(file) << what;
    EXPECT_EQ(
        test::differingPixels(expectedPixels(QImage::fromData(*file, "png")), expectedPixels(original)), 0)
        << what;
}

TEST(PngEncoder, GivesBackEveryPixelInEveryFormatAndSize)
{
    for (const auto format :
        {QImage::Format_RGB32, QImage::Format_ARGB32_Premultiplied, QImage::Format_ARGB32,
            QImage::Format_RGB888, QImage::Format_Grayscale8, QImage::Format_RGBA8888, QImage::Format_Mono})
        for (const QSize size :
            {QSize(1, 1), QSize(1, 97), QSize(83, 1), QSize(17, 16), QSize(255, 33), QSize(641, 480)})
            for (const bool noisy : {true, false}) {
                expectSamePixels(noisy ? noise(size, format) : mixed(size, format),
                    QString::asprintf("format %d, %d x %d", format, size.width(), size.height())
                        .toStdString());
            }
}

TEST(PngEncoder, JoinsTheSegmentsOfAHugePicture)
{
    for (const QImage& image : {mixed({2500, 1700}, QImage::Format_RGB32), noise({1300, 1500}),
             mixed({1500, 1700}, QImage::Format_ARGB32_Premultiplied)}) {
        EXPECT_GT(chunks(PngEncoder::encode(image, 1).value()).size(), 5)
            << "one segment would not show anything";
        expectSamePixels(image, "huge");
    }
}

TEST(PngEncoder, LeavesOutTransparencyWhenThereIsNone)
{
    constexpr qsizetype colourType = 9;
    QImage image = noise({30, 30}).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    EXPECT_EQ(dataOf(chunks(PngEncoder::encode(image, 1).value()), "IHDR")[colourType], 2);
    image.setPixel(29, 29, 0xfe000000);
    EXPECT_EQ(dataOf(chunks(PngEncoder::encode(image, 1).value()), "IHDR")[colourType], 6);
    EXPECT_FALSE(PngEncoder::encode({}, 1));
}

TEST(PngEncoder, ConvertsColoursThatAreNotStandard)
{
    auto image = test::plain({4, 4}, QColor(200, 80, 60));
    image.setColorSpace(QColorSpace::DisplayP3);
    const QImage read = QImage::fromData(PngEncoder::encode(image, 1).value());
    const QColor expected = image.convertedToColorSpace(QColorSpace::SRgb).pixelColor(0, 0);
    EXPECT_NE(expected.red(), 200);
    EXPECT_EQ(read.pixelColor(0, 0), expected);
}

TEST(PngEncoder, AnIndependentReaderFindsTheSameFile)
{
    const QTemporaryDir folder;
    const auto path = folder.filePath(u"a.png"_s);
    const QImage image = mixed({1200, 900}, QImage::Format_ARGB32_Premultiplied);
    stage::put(path, PngEncoder::encode(image, 2).value());
    const auto outputOf = [](const QString& program, const QStringList& arguments) {
        QProcess process;
        process.start(program, arguments);
        EXPECT_TRUE(process.waitForFinished());
        return process.readAllStandardOutput();
    };
    EXPECT_EQ(outputOf(u"identify"_s,
                  {u"-units"_s, u"PixelsPerInch"_s, u"-format"_s,
                      u"%w %h %[fx:round(resolution.x)] %[colorspace] %m"_s, path}),
        "1200 900 144 sRGB PNG");
    const QImage expected = expectedPixels(image);
    EXPECT_EQ(outputOf(u"convert"_s, {path, u"-depth"_s, u"8"_s, u"rgba:-"_s}),
        QByteArray(reinterpret_cast<const char*>(expected.constBits()), expected.sizeInBytes()));
}

/// Data of every kind that makes the compressor choose other blocks.
std::vector<std::uint8_t> sample(int kind, std::size_t length)
{
    std::vector<std::uint8_t> data(length);
    QRandomGenerator random(quint32(kind + 1));
    for (std::size_t i = 0; i < length; ++i) {
        const std::array<quint32, 5> values{0, random.generate(), random.bounded(4U),
            i < length / 2 ? random.generate() : quint32(i / 700),
            quint32(std::pow(random.generateDouble(), 9) * 256)};
        data[i] = static_cast<std::uint8_t>(values[std::size_t(kind)]);
    }
    return data;
}

TEST(SegmentCompressor, SegmentsPutTogetherUnpackToTheirData)
{
    for (const int level : {1, 5})
        for (int kind = 0; kind < 5; ++kind)
            for (const std::size_t length :
                {std::size_t(0), std::size_t(1), std::size_t(7), std::size_t(70), std::size_t(310'000)}) {
                SegmentCompressor compressor(level);
                std::vector<std::uint8_t> stream, expected;
                for (int part = 0; part < 9; ++part) { // bit positions of all kinds at the seams
                    const auto data = sample((kind + part / 3) % 5, length + std::size_t(part) * 3);
                    const auto segment = compressor.compress(data);
                    stream.insert(stream.end(), segment.begin(), segment.end());
                    expected.insert(expected.end(), data.begin(), data.end());
                }
                stream.insert(stream.end(), std::begin(streamEnd), std::end(streamEnd));
                std::vector<std::uint8_t> unpacked(expected.size());
                const std::unique_ptr<libdeflate_decompressor, decltype(&libdeflate_free_decompressor)>
                    decompressor(libdeflate_alloc_decompressor(), libdeflate_free_decompressor);
                ASSERT_EQ(libdeflate_deflate_decompress(decompressor.get(), stream.data(), stream.size(),
                              unpacked.data(), unpacked.size(), nullptr),
                    LIBDEFLATE_SUCCESS)
                    << "level " << level << " kind " << kind << " length " << length;
                EXPECT_EQ(unpacked, expected);
            }
}

} // namespace
} // namespace pintalux
