// SPDX-License-Identifier: MIT
#include "capture/text/OCR.h"

#include "Gestures.h"
#include "capture/text/OCRLayout.h"
#include "fakes/FakeTextRecognizer.h"
#include "platform/base/SkippableTimer.h"

using namespace std::chrono_literals;

namespace {

/// A word by its left edge, the middle of its height and its height.
TextObservation word(const QString& text, double left, double middle, double height = 0.04)
{
    return {text, QRectF(left, middle - height / 2, 0.08, height)};
}

std::string textOf(const QList<TextObservation>& words) { return OCRLayout::textOf(words).toStdString(); }

class RecognizeTest : public testing::Test {
protected:
    RecognizeTest() { OCR::setRecognizer(recognizer); }
    ~RecognizeTest() override { OCR::setRecognizer(nullptr); }

    std::shared_ptr<FakeTextRecognizer> recognizer = std::make_shared<FakeTextRecognizer>();
    QImage picture = QImage(40, 20, QImage::Format_RGB32);
};

} // namespace

TEST(ReadingOrder, DoesNotDependOnTheOrderInWhichWordsWereSeen)
{
    QList<TextObservation> tilted{word(u"debajo"_s, 0.1, 0.62)};
    // Neighbours are a third of a height apart, the ends more than two heights: "first" by height is the end.
    for (int index = 0; index < 8; ++index)
        tilted.append(word(QString::number(index), 0.1 * index, 0.5 - 0.0133 * index));
    const struct {
        QList<TextObservation> words;
        const char* text;
    } rows[]{{{word(u"uno"_s, 0.1, 0.10), word(u"dos"_s, 0.3, 0.11), word(u"tres"_s, 0.5, 0.10),
                  word(u"cuatro"_s, 0.1, 0.20), word(u"cinco"_s, 0.8, 0.195), word(u"seis"_s, 0.2, 0.30)},
                 "uno dos tres\ncuatro cinco\nseis"},
        {tilted, "0 1 2 3 4 5 6 7\ndebajo"}};
    std::mt19937 random(7);
    for (auto [words, text] : rows)
        for (int round = 0; round < 50; ++round) {
            std::ranges::shuffle(words, random);
            ASSERT_EQ(textOf(words), text) << "round " << round;
        }
}

TEST(ReadingOrder, AtItsLimits)
{
    // Exactly half of 0.25 apart: numbers that a double holds exactly. One line to the order, two to the
    // grouping.
    const auto left = word(u"izquierda"_s, 0.125, 0.5, 0.5), right = word(u"derecha"_s, 0.5, 0.375, 0.25);
    EXPECT_EQ(textOf({right, left}), "izquierda\nderecha");
    const auto higher = word(u"derecha"_s, 0.5, 0.3125, 0.25);
    EXPECT_EQ(textOf({left, higher}), "derecha\nizquierda");
    EXPECT_EQ(textOf({word(u"b"_s, 0.1, 0.1), word(u"a"_s, 0.1, 0.1), word(u"c"_s, 0.1, 0.1)}), "b a c");
    EXPECT_EQ(textOf({}), "");
    EXPECT_EQ(textOf({word({}, 0.1, 0.1), word(u" hola"_s, 0.2, 0.1), word({}, 0.3, 0.1),
                  word(u"mundo"_s, 0.4, 0.1), word({}, 0.1, 0.3)}),
        "hola mundo");
}

TEST_F(RecognizeTest, TheTextArrivesOnTheMainThreadAfterTheCall)
{
    recognizer->found = {word(u"mundo"_s, 0.4, 0.1), word(u"hola"_s, 0.1, 0.1)};
    std::optional<QString> text;
    QThread* thread = nullptr;
    OCR::recognize(picture, [&](const std::optional<QString>& read) {
        text = read;
        thread = QThread::currentThread();
    });
    EXPECT_FALSE(thread) << "called back at once";
    ASSERT_TRUE(gesture::waitFor([&] { return text.has_value(); }));
    EXPECT_EQ(text, u"hola mundo");
    EXPECT_EQ(thread, QCoreApplication::instance()->thread());
}

// It holds some 70 MB, too much for a program that waits in the tray.
TEST_F(RecognizeTest, TheEngineIsLetGoHalfAMinuteAfterTheLastPicture)
{
    const std::weak_ptr engine = std::exchange(recognizer, nullptr);
    bool isRead = false;
    OCR::recognize(picture, [&](const auto&) { isRead = true; });
    ASSERT_TRUE(gesture::waitFor([&] { return isRead; }));
    EXPECT_FALSE(engine.expired());
    EXPECT_EQ(SkippableTimer::skipNext(), 30s);
    EXPECT_TRUE(gesture::waitFor([&] { return engine.expired(); }));
}

TEST_F(RecognizeTest, AReadingThatTakesLongIsToldUntilItsEnd)
{
    struct SlowRecognizer : TextRecognizer {
        std::atomic<bool> isDone = false;
        QList<TextObservation> recognize(const QImage&, const std::atomic<bool>& cancelled) override
        {
            while (!isDone && !cancelled)
                QThread::msleep(1);
            return {};
        }
    };
    const auto slow = std::make_shared<SlowRecognizer>();
    OCR::setRecognizer(slow);
    QStringList told;
    OCR::setPresenter(
        {.takesLong = [&] { told << u"long"_s; }, .ended = [&] { told << u"ended"_s; }, .failed = {}});
    for (int picture = 0; picture < 2; ++picture)
        OCR::recognize(
            QImage(4, 4, QImage::Format_RGB32), [&](const std::optional<QString>&) { told << u"result"_s; });
    EXPECT_EQ(SkippableTimer::skipNext(), 1s);
    slow->isDone = true;
    ASSERT_TRUE(gesture::waitFor([&] { return told.count(u"result"_s) == 2; }));
    EXPECT_EQ(told, (QStringList{u"long"_s, u"ended"_s, u"result"_s, u"ended"_s, u"result"_s}))
        << "the sign goes before the caller's message comes";
    OCR::setPresenter({});
}

TEST_F(RecognizeTest, WhatIsMissingIsToldAfterTheCallerHasHadItsSay)
{
    recognizer->failure = Error(u"X"_s, 2, u"Falta un paquete."_s);
    QStringList told;
    OCR::setPresenter({.takesLong = {}, .ended = {}, .failed = [&](const Error& error) {
                           told << error.localizedDescription;
                       }});
    OCR::recognize(picture, [&](const std::optional<QString>& read) {
        EXPECT_FALSE(read);
        told << u"result"_s;
    });
    ASSERT_TRUE(gesture::waitFor([&] { return told.size() == 2; }));
    EXPECT_EQ(told, (QStringList{u"result"_s, u"Falta un paquete."_s}));
    OCR::setPresenter({});
    EXPECT_FALSE(OCR::recognizeSync(picture));
}
