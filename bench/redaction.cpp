// SPDX-License-Identifier: MIT

// Tries to read redacted texts back, as somebody can who knows everything but the text: font, size, place,
// colours, and the program itself, with which guesses are redacted and compared. Prints how many random texts
// and characters were read, and how many pure chance would read.

#include "editor/state/EditorModel.h"
#include "platform/base/UserDefaults.h"

#include <QApplication>
#include <QColorSpace>
#include <QFontMetricsF>
#include <QPainter>
#include <QRandomGenerator>

#include <algorithm>
#include <cstdio>
#include <vector>

using namespace Qt::StringLiterals;

using namespace pintalux;

namespace {

struct Scene {
    const char* font;
    int pixelSize; ///< at 1×
    const char* alphabet;
    int length;
    double scale;
    bool dark;
    BlurStyle style;
};

/// A text somewhere in a window, and all the exports of it that somebody got hold of.
class Target {
public:
    Target(const Scene& scene, QPointF phase, int crops)
        : scene(scene)
        , alphabet(QString::fromLatin1(scene.alphabet))
        , font(QString::fromLatin1(scene.font))
        , place(QPointF(150, 130) + phase)
    {
        font.setPixelSize(int(scene.pixelSize * scene.scale));
        QRandomGenerator random(99);
        for (int i = 0; i < crops; ++i)
            origins << QPoint(random.bounded(30), random.bounded(30)) * scene.scale;
    }

    /// What an attacker has of a text: the redacted part of each export.
    std::vector<QImage> exports(const QString& text)
    {
        const auto capture = captureOf(text);
        std::vector<QImage> all;
        for (const auto& origin : origins)
            all.push_back(exported(capture, origin));
        return all;
    }

    QString randomText(QRandomGenerator& random) const
    {
        QString text;
        for (int i = 0; i < scene.length; ++i)
            text += alphabet[random.bounded(int(alphabet.size()))];
        return text;
    }

    /// How far a beginning of the text decides what is seen, in pixels from the left edge of an export: what
    /// follows reaches back by a cell.
    double endOf(const QString& beginning) const
    {
        return 3 * scene.scale + QFontMetricsF(font).horizontalAdvance(beginning);
    }

    const Scene scene;
    const QString alphabet;

private:
    QImage captureOf(const QString& text) const
    {
        QImage image((QSizeF(520, 250) * scene.scale).toSize(), QImage::Format_RGB32);
        image.setColorSpace(QColorSpace::SRgb);
        image.fill(scene.dark ? QColor(30, 32, 36) : QColor(Qt::white));
        QPainter painter(&image);
        painter.setPen(scene.dark ? QColor(225, 228, 232) : QColor(20, 20, 24));
        painter.setFont(font);
        painter.drawText(place * scene.scale, text);
        return image;
    }

    QImage exported(const QImage& capture, QPoint origin)
    {
        EditorModel model({capture, scene.scale, {}}, settings);
        if (origins.size() > 1) {
            model.setTool(Tool::crop);
            model.setCropRect(QRectF(origin, QSizeF(480, 210) * scene.scale));
            model.applyCrop();
        }
        const auto offset = origins.size() > 1 ? QPointF(origin) : QPointF();
        const QRectF hidden = QRectF(place - QPointF(12, 60), QSizeF(340, 90));
        model.add({.kind = AnnotationKind::blur,
            .start = hidden.topLeft() * scene.scale - offset,
            .end = hidden.bottomRight() * scene.scale - offset,
            .blurStyle = scene.style});
        model.setBeautify({.enabled = false});
        return model.renderFinal().copy(
            QRectF(hidden.topLeft() * scene.scale - offset, hidden.size() * scene.scale).toAlignedRect());
    }

    QFont font;
    QPointF place;
    QList<QPoint> origins;
    UserDefaults store = UserDefaults::inMemory();
    Settings settings{store};
};

/// Squared differences in the columns before `end`, in pixels of the exports.
double difference(const std::vector<QImage>& a, const std::vector<QImage>& b, double end = 1e9)
{
    double sum = 0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        const int samples = 4 * int(std::clamp(end, 0., double(a[i].width())));
        for (int y = 0; y < a[i].height(); ++y) {
            const auto* p = a[i].constScanLine(y);
            const auto* q = b[i].constScanLine(y);
            int line = 0;
            for (int x = 0; x < samples; ++x)
                line += (p[x] - q[x]) * (p[x] - q[x]);
            sum += line;
        }
    }
    return sum;
}

/// From left to right: of all beginnings, the few that come closest in what lies before their end. In the
/// place of what follows stand characters of middling darkness.
QString spell(Target& target, const std::vector<QImage>& seen, int kept)
{
    std::vector<QString> beginnings{QString()};
    for (int length = 1; length <= target.scene.length; ++length) {
        std::vector<std::pair<double, QString>> longer;
        for (const auto& beginning : beginnings)
            for (const QChar letter : target.alphabet) {
                const QString text = beginning + letter;
                const auto rest
                    = QString(target.scene.length - length, target.alphabet[target.alphabet.size() / 2]);
                const double end = rest.isEmpty() ? 1e9 : target.endOf(text);
                longer.emplace_back(difference(target.exports(text + rest), seen, end), text);
            }
        std::ranges::sort(longer);
        beginnings.clear();
        for (std::size_t i = 0; i < std::min(longer.size(), std::size_t(kept)); ++i)
            beginnings.push_back(longer[i].second);
    }
    return beginnings.front();
}

/// Goes from a text to ever closer ones, changing a character at a time.
QString climb(Target& target, const std::vector<QImage>& seen, QString guess)
{
    double closest = difference(target.exports(guess), seen);
    for (bool better = true; better && closest > 0;) {
        better = false;
        for (int at = 0; at < guess.size(); ++at)
            for (const QChar letter : target.alphabet) {
                auto tried = guess;
                tried[at] = letter;
                const double distance = difference(target.exports(tried), seen);
                if (distance >= closest)
                    continue;
                closest = distance;
                guess = tried;
                better = true;
            }
    }
    return guess;
}

/// The most frequent character of each place among those of many random texts that come closest.
QString vote(Target& target, const std::vector<QImage>& seen, QRandomGenerator& random, int samples)
{
    std::vector<std::pair<double, QString>> tries;
    for (int i = 0; i < samples; ++i) {
        const auto text = target.randomText(random);
        tries.emplace_back(difference(target.exports(text), seen), text);
    }
    std::ranges::sort(tries);
    const double limit = tries[tries.size() / 20].first; // all that are as close as the closest twentieth
    QString result;
    for (int at = 0; at < target.scene.length; ++at) {
        QList<int> counts(target.alphabet.size());
        for (const auto& [distance, text] : tries)
            if (distance <= limit)
                ++counts[target.alphabet.indexOf(text[at])];
        result += target.alphabet[std::ranges::max_element(counts) - counts.begin()];
    }
    return result;
}

struct Score {
    int texts = 0;
    int whole = 0;
    int characters = 0;
    int right = 0;

    void add(const QString& read, const QString& secret)
    {
        ++texts;
        whole += read == secret;
        for (int i = 0; i < secret.size(); ++i) {
            ++characters;
            right += read[i] == secret[i];
        }
    }
    void operator+=(const Score& other)
    {
        texts += other.texts;
        whole += other.whole;
        characters += other.characters;
        right += other.right;
    }
};

void print(const char* attack, const Scene& scene, int crops, const Score& score)
{
    std::printf(
        "%-6s %-9s %gx %2d px %-16s %-5s %2d letters %2d exports: texts %2d of %2d, characters %5.1f %% "
        "(chance %.1f %%)\n",
        attack, scene.style == BlurStyle::pixelate ? "pixellate" : "blur", scene.scale, scene.pixelSize,
        scene.font, scene.dark ? "dark" : "light", scene.length, crops, score.whole, score.texts,
        100. * score.right / score.characters, 100. / double(qstrlen(scene.alphabet)));
    std::fflush(stdout);
}

} // namespace

/// An argument sets how many texts are tried in each scene.
int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const int texts = argc > 1 ? std::max(1, atoi(argv[1])) : 6;
    constexpr const char* digits = "0123456789";
    constexpr const char* hexadecimal = "0123456789abcdef";
    constexpr const char* letters = "abcdefghijklmnopqrstuvwxyz";
    Score spelled, voted, cropped;
    for (const auto style : allCases<BlurStyle>()) {
        for (const auto& scene : {Scene{"Inter", 14, digits, 8, 1, false, style},
                 {"Inter", 14, digits, 8, 2, true, style}, {"Comic Neue", 19, digits, 8, 1, true, style},
                 {"DejaVu Sans Mono", 12, hexadecimal, 8, 1, false, style},
                 {"Inter", 22, digits, 8, 1, false, style}, {"Inter", 17, letters, 6, 2, false, style},
                 {"DejaVu Sans Mono", 40, digits, 6, 1, false, style}}) {
            Score spelledHere, votedHere;
            QRandomGenerator random(2024);
            for (int i = 0; i < texts; ++i) {
                Target target(scene, {random.bounded(72.0), random.bounded(36.0)}, 1);
                const auto secret = target.randomText(random);
                const auto seen = target.exports(secret);
                spelledHere.add(climb(target, seen, spell(target, seen, 50)), secret);
                votedHere.add(vote(target, seen, random, 600), secret);
            }
            print("spell", scene, 1, spelledHere);
            print("vote", scene, 1, votedHere);
            spelled += spelledHere;
            voted += votedHere;
        }
        for (const int crops : {16, 64}) {
            const Scene scene{"Inter", 14, digits, 8, 1, false, style};
            Score score;
            QRandomGenerator random(7);
            for (int i = 0; i < std::max(1, texts * 4 / crops); ++i) {
                Target target(scene, {random.bounded(72.0), random.bounded(36.0)}, crops);
                const auto secret = target.randomText(random);
                const auto seen = target.exports(secret);
                score.add(climb(target, seen, target.randomText(random)), secret);
            }
            print("crops", scene, crops, score);
            cropped += score;
        }
    }
    for (const auto& [name, score] : {std::pair{"spell", spelled}, {"vote", voted}, {"crops", cropped}})
        std::printf("%-6s in all: texts %d of %d, characters %.1f %%\n", name, score.whole, score.texts,
            100. * score.right / score.characters);
}
