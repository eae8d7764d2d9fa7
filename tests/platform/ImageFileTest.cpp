// SPDX-License-Identifier: MIT
#include "platform/image/ImageFile.h"

#include "Pictures.h"
#include "Stage.h"
#include "platform/base/Error.h"
#include "platform/image/DecoderProcess.h"
#include "platform/image/PngEncoder.h"

#include <libdeflate.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace pintalux {
namespace {

/// Four colours, one to a quarter, so that turning and mirroring show.
QImage quarters(QSize size)
{
    auto image = test::plain(size);
    const int w = size.width() / 2, h = size.height() / 2;
    QPainter painter(&image);
    painter.fillRect(0, 0, w, h, Qt::red);
    painter.fillRect(w, 0, w, h, Qt::green);
    painter.fillRect(0, h, w, h, Qt::blue);
    return image;
}

void expectQuarters(const QImage& image, QSize size, const std::string& what)
{
    ASSERT_EQ(image.size(), size) << what;
    const auto small = image.scaled(2, 2);
    const auto wanted = quarters({2, 2});
    EXPECT_EQ(test::difference(small, wanted, 40), QRect()) << what;
}

void runTool(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    ASSERT_TRUE(process.waitForFinished()) << qPrintable(program);
    ASSERT_EQ(process.exitCode(), 0) << qPrintable(program) << process.readAllStandardError().constData();
}

class ImageFiles : public testing::Test {
protected:
    QString path(const QString& name) const { return folder.filePath(name); }
    void write(const QString& name, const QByteArray& bytes) const { stage::put(path(name), bytes); }
    QByteArray bytes(const QString& name) const { return stage::contents(path(name)); }

    /// The sentence of the failure, empty when the file could be read.
    QString failure(const QString& name) const
    {
        try {
            EXPECT_FALSE(readImageFile(path(name)).image.isNull());
        } catch (const Error& error) {
            EXPECT_TRUE(error.localizedDescription.endsWith(u'.'));
            EXPECT_NE(error.code, 0);
            return error.localizedDescription;
        }
        return {};
    }

    /// Four quarters in a file of each kind, most of them made by other programs: once, as that takes a
    /// while.
    static void SetUpTestSuite()
    {
        samples = std::make_unique<QTemporaryDir>();
        const auto name = [](const QString& kind) { return samples->filePath(u"a."_s + kind); };
        ASSERT_TRUE(quarters({80, 60}).save(name(u"png"_s)));
        for (const QString& kind : {u"jpg"_s, u"tiff"_s, u"gif"_s, u"webp"_s, u"bmp"_s})
            runTool(u"convert"_s, {name(u"png"_s), u"-quality"_s, u"95"_s, name(kind)});
        // Encoders of this one are rare: the same quarters as another program wrote them.
        ASSERT_TRUE(QFile::copy(u"" TEST_DATA "/quarters.heic"_s, name(u"heic"_s)));
    }
    static void TearDownTestSuite() { samples.reset(); }

    QByteArray sample(const QString& kind) const
    {
        return stage::contents(samples->filePath(u"a."_s + kind));
    }

    static inline std::unique_ptr<QTemporaryDir> samples;
    QTemporaryDir folder;
};

TEST_F(ImageFiles, ReadsEveryKindWhateverItsName)
{
    for (const QString& kind : {u"png"_s, u"jpg"_s, u"tiff"_s, u"gif"_s, u"webp"_s, u"bmp"_s, u"heic"_s}) {
        for (const QString& name : {u"a."_s + kind, kind + u".txt"_s}) {
            write(name, sample(kind));
            const ImageFile file = readImageFile(path(name));
            expectQuarters(file.image, {80, 60}, name.toStdString());
            EXPECT_EQ(file.image.format(), QImage::Format_RGB32) << qPrintable(name);
            EXPECT_EQ(file.image.colorSpace(), QColorSpace(QColorSpace::SRgb)) << qPrintable(name);
            EXPECT_EQ(file.pixelScale(), 1) << qPrintable(name);
        }
    }
}

TEST_F(ImageFiles, BrokenAndCutOffFilesAreErrorsAndNotHalfPictures)
{
    for (const QString& kind : {u"png"_s, u"jpg"_s, u"tiff"_s, u"gif"_s, u"webp"_s, u"bmp"_s, u"heic"_s}) {
        const QByteArray whole = sample(kind);
        const QImage expected = readImageFile(samples->filePath(u"a."_s + kind)).image;
        for (const double part : {0.02, 0.1, 0.3, 0.5, 0.7, 0.9, 0.97}) {
            write(u"cut"_s, whole.left(qsizetype(double(whole.size()) * part)));
            if (failure(u"cut"_s).isEmpty()) {
                EXPECT_EQ(readImageFile(path(u"cut"_s)).image, expected) << qPrintable(kind) << ' ' << part;
            }
        }
        for (qsizetype at = 3; at < whole.size(); at += whole.size() / 60 + 1) {
            QByteArray broken = whole;
            broken.replace(at, 3, "\xff\x00\x7f", 3);
            write(u"broken"_s, broken);
            failure(u"broken"_s); // either way, but no crash
        }
    }
}

TEST_F(ImageFiles, SaysWhatIsWrongWithAFile)
{
    const QString notAnImage = u"«x» no es una imagen que se pueda abrir."_s;
    for (const QByteArray& content : {QByteArray(), QByteArray("\xff"), QByteArray("\xff\xd8\xff"),
             QByteArray("hello, world"), QByteArray(100'000, 'x'),
             QByteArray("\0\0\0\x18"
                        "ftypheic\0\0\0\0mif1heic",
                 24)}) {
        write(u"x"_s, content);
        EXPECT_EQ(failure(u"x"_s), notAnImage) << content.size();
    }
    EXPECT_EQ(failure(u"none.png"_s), u"No existe el archivo «none.png»."_s);
    ASSERT_TRUE(QDir(folder.path()).mkdir(u"folder.png"_s));
    EXPECT_EQ(failure(u"folder.png"_s), u"«folder.png» no es un archivo."_s);
    ASSERT_EQ(mkfifo(qPrintable(path(u"pipe.png"_s)), 0600), 0);
    EXPECT_EQ(failure(u"pipe.png"_s), u"«pipe.png» no es un archivo."_s);
}

TEST_F(ImageFiles, RefusesWhatWouldNotFitBeforeTakingTheMemory)
{
    // Headers that promise 30000 x 30000 pixels, without the pixels.
    const QByteArray huge("\0\0\x75\x30\0\0\x75\x30", 8);
    QByteArray png = sample(u"png"_s);
    png.replace(16, 8, huge);
    const quint32 checksum = qToBigEndian(libdeflate_crc32(0, png.constData() + 12, 17));
    png.replace(29, 4, QByteArray(reinterpret_cast<const char*>(&checksum), 4));
    QByteArray heic = sample(u"heic"_s);
    for (qsizetype at = heic.indexOf("ispe"); at >= 0; at = heic.indexOf("ispe", at + 1))
        heic.replace(at + 8, 8, huge);
    write(u"x"_s, png);
    EXPECT_EQ(failure(u"x"_s), u"La imagen «x» es demasiado grande."_s);
    write(u"x"_s, heic);
    EXPECT_EQ(failure(u"x"_s), u"La imagen «x» es demasiado grande."_s);
}

TEST_F(ImageFiles, SurvivesWhatEndsADecoder)
{
    // Its picture is a grid whose only tile is itself.
    write(u"a.heic"_s, stage::contents(QStringLiteral(FUZZ_CORPUS "/image/self-grid.heic")));
    EXPECT_EQ(failure(u"a.heic"_s), u"«a.heic» no es una imagen que se pueda abrir."_s);
    EXPECT_EQ(DecoderProcess::decode(sample(u"heic"_s), std::chrono::milliseconds(0)).outcome,
        DecodedImage::Outcome::tooSlow);
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "a decoder was left behind";
}

TEST_F(ImageFiles, SaysThatTheSystemLetsNoDecoderStart)
{
    write(u"a.heic"_s, sample(u"heic"_s));
    struct rlimit before { };
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
    // Room for the file itself, and for ever more of what decoding opens, until there is enough.
    const int next = dup(0);
    close(next);
    int failures = 0;
    for (QString sentence; failures == 0 || !sentence.isEmpty(); ++failures) {
        ASSERT_LT(failures, 20);
        auto few = before;
        few.rlim_cur = rlim_t(next + 1 + failures);
        ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &few), 0);
        sentence = failure(u"a.heic"_s);
        ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &before), 0);
        const bool isToldWhy
            = sentence.isEmpty() || sentence == u"No hay memoria para abrir la imagen «a.heic»."_s;
        EXPECT_TRUE(isToldWhy) << sentence.toStdString();
        EXPECT_EQ(dup(0), next) << "a file was left open";
        close(next);
    }
    EXPECT_GT(failures, 3) << "room for the file alone was enough";
    EXPECT_EQ(failure(u"a.heic"_s), QString());
}

/// A block of metadata with one entry: 0x0112, a short number.
QByteArray orientationBlock(int orientation)
{
    constexpr char start[] = "MM\0*\0\0\0\x08\0\1\x01\x12\0\3\0\0\0\1";
    QByteArray block(start, sizeof start - 1);
    return block.append('\0').append(char(orientation)).append(QByteArray(6, '\0'));
}

template <typename Number> QByteArray bigEndian(Number number)
{
    number = qToBigEndian(number);
    return {reinterpret_cast<const char*>(&number), sizeof number};
}

QByteArray littleEndian(quint32 number, int bytes = 4)
{
    number = qToLittleEndian(number);
    return {reinterpret_cast<const char*>(&number), bytes};
}

/// The file with its block of metadata where its format has it.
QByteArray withOrientation(QByteArray file, const QString& kind, QSize size, int orientation)
{
    const auto block = orientationBlock(orientation);
    if (kind == u"jpg") {
        const auto content = QByteArray("Exif\0\0", 6) + block;
        return file.insert(2, "\xff\xe1" + bigEndian(quint16(content.size() + 2)) + content);
    }
    if (kind == u"png") {
        const auto content = "eXIf" + block;
        const auto checksum
            = bigEndian(quint32(libdeflate_crc32(0, content.constData(), std::size_t(content.size()))));
        constexpr int afterHeader = 8 + 25;
        return file.insert(afterHeader, bigEndian(quint32(block.size())) + content + checksum);
    }
    constexpr int hasMetadata = 0x08;
    const auto extent = "VP8X" + littleEndian(10) + littleEndian(hasMetadata)
        + littleEndian(quint32(size.width() - 1), 3) + littleEndian(quint32(size.height() - 1), 3);
    file = file.mid(12, 4) == "VP8X" ? file.replace(20, 1, littleEndian(hasMetadata, 1))
                                     : file.insert(12, extent);
    file += "EXIF" + littleEndian(quint32(block.size())) + block;
    return file.replace(4, 4, littleEndian(quint32(file.size() - 8)));
}

TEST_F(ImageFiles, TurnsPhotographsTheWayTheyWereTaken)
{
    // As the camera stores it, and which turn the file asks for to see it upright.
    const auto mirror = QTransform().scale(-1, 1);
    const auto turned = [](int degrees) { return QTransform().rotate(degrees); };
    for (const QString& kind : {u"jpg"_s, u"png"_s, u"webp"_s}) {
        for (const auto& [orientation, turn] : {std::pair{1, QTransform()}, {2, mirror}, {3, turned(180)},
                 {4, turned(180) * mirror}, {5, turned(90) * mirror}, {6, turned(-90)},
                 {7, turned(-90) * mirror}, {8, turned(90)}, {9, QTransform()}}) {
            const auto stored = quarters({80, 60}).transformed(turn);
            ASSERT_TRUE(stored.save(path(u"stored"_s), qPrintable(kind), 95));
            write(u"turned"_s, withOrientation(bytes(u"stored"_s), kind, stored.size(), orientation));
            expectQuarters(readImageFile(path(u"turned"_s)).image, {80, 60},
                kind.toStdString() + ' ' + std::to_string(orientation));
        }
    }
}

TEST_F(ImageFiles, LeavesAPictureWithBrokenMetadataAsItIs)
{
    ASSERT_TRUE(quarters({80, 60}).save(path(u"stored"_s), "png"));
    const auto whole = withOrientation(bytes(u"stored"_s), u"png"_s, {80, 60}, 6);
    const auto block = whole.indexOf("eXIf") + 4;
    for (const auto& [at, value] : {std::pair{0, 'X'}, {4, '\x7f'}, {11, '\x7f'}}) {
        auto broken = whole;
        broken[block + at] = value;
        write(u"broken"_s, broken);
        expectQuarters(readImageFile(path(u"broken"_s)).image, {80, 60}, std::to_string(at));
    }
}

TEST_F(ImageFiles, ConvertsColoursToTheStandardSpace)
{
    auto image = test::plain({20, 20}, QColor(200, 80, 60));
    image.setColorSpace(QColorSpace::DisplayP3);
    ASSERT_TRUE(image.save(path(u"wide.png"_s)));
    const QColor expected = image.convertedToColorSpace(QColorSpace::SRgb).pixelColor(3, 3);
    const QImage read = readImageFile(path(u"wide.png"_s)).image;
    EXPECT_FALSE(test::near(expected, QColor(200, 80, 60), 8));
    EXPECT_TRUE(test::near(read.pixelColor(3, 3), expected, 1));
    EXPECT_EQ(read.colorSpace(), QColorSpace(QColorSpace::SRgb));
}

TEST_F(ImageFiles, KeepsThePixelsOfAPngThatDescribesTheStandardSpaceByGammaAndPrimaries)
{
    QImage image(256, 3, QImage::Format_RGB32);
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 256; ++x)
            image.setPixel(x, y, qRgb(y == 0 ? x : 0, y == 1 ? x : 90, y == 2 ? x : 20));
    ASSERT_TRUE(image.save(path(u"plain.png"_s)));
    const auto gamma = QByteArray::fromHex("0000000467414d410000b18f0bfc6105");
    const auto primaries = QByteArray::fromHex("000000206348524d00007a26000080840000fa00000080e8"
                                               "000075300000ea6000003a98000017709cba513c");
    const auto wider = QByteArray::fromHex("000000206348524d00007a26000080840000fa00000080e8"
                                           "000052080001155800003a9800001770dc49d778");
    constexpr int afterHeader = 8 + 25;
    for (const auto& chunks : {gamma, gamma + primaries}) {
        write(u"old.png"_s, bytes(u"plain.png"_s).insert(afterHeader, chunks));
        EXPECT_EQ(readImageFile(path(u"old.png"_s)).image.convertToFormat(QImage::Format_RGB32),
            readImageFile(path(u"plain.png"_s)).image);
    }
    write(u"wide.png"_s, bytes(u"plain.png"_s).insert(afterHeader, gamma + wider));
    EXPECT_NE(readImageFile(path(u"wide.png"_s)).image, readImageFile(path(u"plain.png"_s)).image);
}

TEST_F(ImageFiles, KeepsTransparencyAndDropsAnEmptyOne)
{
    auto image = test::plain({20, 20}, QColor(200, 80, 60), QImage::Format_ARGB32);
    ASSERT_TRUE(image.save(path(u"a.png"_s)));
    EXPECT_EQ(readImageFile(path(u"a.png"_s)).image.format(), QImage::Format_RGB32);
    image.setPixelColor(4, 4, QColor(200, 80, 60, 100));
    ASSERT_TRUE(image.save(path(u"a.png"_s)));
    const QImage read = readImageFile(path(u"a.png"_s)).image;
    EXPECT_EQ(read.format(), QImage::Format_ARGB32_Premultiplied);
    EXPECT_EQ(qAlpha(read.pixel(4, 4)), 100);
}

TEST_F(ImageFiles, OpensAtTheScaleThatItsResolutionSays)
{
    for (const auto& [dotsPerInch, scale] : {std::pair{72., 1.}, {96., 1.}, {100., 1.}, {101., 1.},
             {107., 1.}, {108., 2.}, {144., 2.}, {180., 3.}, {216., 3.}, {252., 4.}, {300., 4.}, {36., 1.}}) {
        EXPECT_EQ((ImageFile{{}, dotsPerInch}.pixelScale()), scale) << dotsPerInch;
        write(u"a.png"_s, PngEncoder::encode(quarters({8, 8}), dotsPerInch / 72).value());
        const ImageFile file = readImageFile(path(u"a.png"_s));
        EXPECT_EQ(file.dotsPerInch, dotsPerInch);
        EXPECT_EQ(file.pixelScale(), scale) << dotsPerInch;
    }
    EXPECT_EQ((ImageFile{{}, std::nullopt}.pixelScale()), 1);
    EXPECT_EQ((ImageFile{{}, std::nan("")}.pixelScale()), 1);
    EXPECT_EQ((ImageFile{{}, 2'540'000.}.pixelScale()), 1); // no device is that fine
}

} // namespace
} // namespace pintalux
