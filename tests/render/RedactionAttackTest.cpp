// SPDX-License-Identifier: MIT
#include "Scene.h"

/// Reads redacted text back, as anybody can who has the program: what was hidden is guessed, redacted in the
/// same way and compared.
namespace pintalux {
namespace {

using namespace testing_scene;
constexpr QStringView digits = u"0123456789";
constexpr QStringView letters = u"abcdefghijklmnopqrstuvwxyz";

QString randomString(QStringView alphabet, int length, QRandomGenerator& random)
{
    QString text;
    for (int i = 0; i < length; ++i)
        text += alphabet[random.bounded(int(alphabet.size()))];
    return text;
}

/// Black on white in DejaVu Sans, as a program on the screen writes it.
class Paper {
public:
    Paper(QSize size, double scale, int pixelSize)
        : image(plain(int(size.width() * scale), int(size.height() * scale))
                    .convertToFormat(QImage::Format_RGB32))
        , scale(scale)
        , font(u"DejaVu Sans"_s)
    {
        font.setPixelSize(int(pixelSize * scale));
    }

    /// `baseline` in points.
    void write(const QString& text, QPointF baseline)
    {
        QPainter painter(&image);
        painter.setFont(font);
        painter.drawText(baseline * scale, text);
    }

    void clear(const QRect& pixels) { QPainter(&image).fillRect(pixels, Qt::white); }

    QImage redacted(BlurStyle style) const
    {
        EffectCache cache;
        return cache.image(style, image, scale);
    }

    QImage image;
    double scale;
    QFont font;
};

/// In bits: 0 when all are alike, log2 of their number when no two are.
double entropy(const QList<QByteArray>& values)
{
    QHash<QByteArray, int> counts;
    for (const auto& value : values)
        ++counts[value];
    double bits = 0;
    for (const int count : std::as_const(counts))
        bits -= count * std::log2(double(count) / double(values.size()));
    return bits / double(values.size());
}

QByteArray digest(const QImage& image)
{
    return QCryptographicHash::hash(
        QByteArrayView(image.constBits(), image.sizeInBytes()), QCryptographicHash::Md5);
}

struct Writing {
    QStringView alphabet;
    int pixelSize; ///< at 1×
    double most;   ///< bits in one place
    double mean;   ///< bits on average
};

} // namespace

// What the redacted picture tells of the text: the outputs of many texts in one place, counted.
TEST(RedactionAttack, ManyTextsInOnePlaceGiveFewPictures)
{
    constexpr int texts = 64;
    for (const auto& writing : {Writing{digits, 13, 4, 2}, {digits, 26, 4, 2}, {letters, 16, 4, 2}}) {
        for (const auto style : allCases<BlurStyle>()) {
            for (const double scale : {1.0, 2.0}) {
                double sum = 0;
                constexpr std::array phases{QPointF(0, 0), QPointF(2.5, 4), QPointF(5, 7.5), QPointF(7, 1.5)};
                for (const auto& phase : phases) {
                    QRandomGenerator random(7);
                    QList<QByteArray> outputs;
                    for (int i = 0; i < texts; ++i) {
                        Paper paper({260, 90}, scale, writing.pixelSize);
                        paper.write(randomString(writing.alphabet, 8, random), QPointF(40, 45) + phase);
                        outputs << digest(paper.redacted(style));
                    }
                    const double bits = entropy(outputs);
                    EXPECT_LE(bits, writing.most) << writing.pixelSize << " px, scale " << scale;
                    sum += bits;
                }
                EXPECT_LE(sum / phases.size(), writing.mean) << writing.pixelSize << " px, scale " << scale;
            }
        }
    }
}

namespace {

/// Squared differences within one place of two pictures.
double difference(const QImage& a, const QImage& b, const QRect& place)
{
    double sum = 0;
    for (int y = place.top(); y <= place.bottom(); ++y) {
        const auto* p = a.constScanLine(y) + 4 * place.left();
        const auto* q = b.constScanLine(y) + 4 * place.left();
        for (int i = 0; i < 4 * place.width(); ++i)
            sum += (p[i] - q[i]) * (p[i] - q[i]);
    }
    return sum;
}

/// Guesses many texts of one sheet at once, each in its place, character by character.
class Climber {
public:
    static constexpr int columns = 4, rows = 6, length = 6;

    Climber(BlurStyle style, double scale)
        : style(style)
        , scale(scale)
        , random(11)
    {
        for (auto& text : secret)
            text = randomString(digits, length, random);
        for (auto& text : guess)
            text = randomString(digits, length, random);
        target = redacted(secret);
    }

    void climb()
    {
        auto best = differences(guess);
        for (int at = 0; at < length; ++at) {
            for (const QChar digit : digits) {
                auto tried = guess;
                for (auto& text : tried)
                    text[at] = digit;
                const auto tries = differences(tried);
                for (std::size_t i = 0; i < tries.size(); ++i) {
                    if (tries[i] >= best[i])
                        continue;
                    best[i] = tries[i];
                    guess[i] = tried[i];
                }
            }
        }
    }

    int stringsRead() const
    {
        return int(std::ranges::count_if(indices(), [&](std::size_t i) { return guess[i] == secret[i]; }));
    }
    double partOfCharactersRead() const
    {
        int same = 0;
        for (const auto i : indices())
            for (int at = 0; at < length; ++at)
                same += guess[i][at] == secret[i][at];
        return same / double(columns * rows * length);
    }

private:
    using Texts = std::array<QString, columns * rows>;
    static constexpr QSize place{151, 79}; // points; no two texts lie in the same way on the grid

    static std::vector<std::size_t> indices()
    {
        std::vector<std::size_t> all(columns * rows);
        std::iota(all.begin(), all.end(), 0);
        return all;
    }

    QImage redacted(const Texts& texts) const
    {
        Paper paper({columns * place.width(), rows * place.height()}, scale, 13);
        for (const auto i : indices())
            paper.write(texts[i],
                QPointF(int(i) % columns * place.width() + 50, int(i) / columns * place.height() + 45));
        return paper.redacted(style);
    }

    std::array<double, columns * rows> differences(const Texts& texts) const
    {
        const auto image = redacted(texts);
        std::array<double, columns * rows> all{};
        for (const auto i : indices()) {
            const QRectF points(
                QPointF(int(i) % columns * place.width(), int(i) / columns * place.height()), QSizeF(place));
            all[i]
                = difference(image, target, QRectF(points.topLeft() * scale, points.size() * scale).toRect());
        }
        return all;
    }

    BlurStyle style;
    double scale;
    QRandomGenerator random;
    Texts secret;
    Texts guess;
    QImage target;
};

} // namespace

TEST(RedactionAttack, GuessingCharacterByCharacterReadsNothing)
{
    for (const auto style : allCases<BlurStyle>()) {
        for (const double scale : {1.0, 2.0}) {
            Climber climber(style, scale);
            climber.climb();
            climber.climb();
            EXPECT_EQ(climber.stringsRead(), 0) << "scale " << scale;
            EXPECT_LE(climber.partOfCharactersRead(), 0.2) << "scale " << scale;
        }
    }
}

} // namespace pintalux
