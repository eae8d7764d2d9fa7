#include "app/Delivery.h"

#include "platform/UserDefaults.h"
#include "settings/Settings.h"

#include <QClipboard>
#include <QDir>
#include <QGuiApplication>
#include <QMimeData>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace pintalux;

namespace {

class DeliveryTest : public testing::Test {
protected:
    DeliveryTest()
    {
        settings.setSaveFolder(folder.filePath(u"capturas"_qs));
        QGuiApplication::clipboard()->setText(u"antes"_qs);
        settings.setPlaySound(false);
        settings.setAutoCopy(true);
        settings.setAutoSave(false);
        shot.image = QImage(30, 20, QImage::Format_RGB32);
        shot.image.fill(Qt::darkCyan);
        shot.pixelScale = 2;
        shot.suggestedName = u"Informe"_qs;
    }

    Delivery::Routes routes()
    {
        return {
            .reactivatePrevious = [this] { log << u"reactivate"_qs; },
            .forgetPrevious = [this] { log << u"forget"_qs; },
            .playSound = [this] { log << u"sound"_qs; },
            .openEditor
            = [this](const CaptureResult&, const std::optional<QString>&) { log << u"editor"_qs; },
            .showThumbnail =
                [this](const CaptureResult&, const std::optional<QString>& saved) {
                    log << u"thumbnail"_qs << (saved ? u"saved"_qs : u"unsaved"_qs);
                },
            .recognizeText
            = [this](const QImage&, const std::function<void(const QString&)>& done) { done(recognized); },
            .showMessage =
                [this](const QString& message, const QString& symbol, const QColor& tint) {
                    log << u"message"_qs << message << symbol;
                    if (tint.isValid())
                        log << tint.name();
                },
        };
    }

    QStringList files() const { return QDir(settings.saveFolder()).entryList(QDir::Files | QDir::Hidden); }
    static bool clipboardHasImage()
    {
        return QGuiApplication::clipboard()->mimeData()->hasFormat(u"image/png"_qs);
    }
    static QString clipboardText() { return QGuiApplication::clipboard()->text(); }

    QTemporaryDir folder;
    UserDefaults store = UserDefaults::inMemory();
    Settings settings{store};
    CaptureResult shot;
    QStringList log;
    QString recognized;
    Delivery delivery{settings, routes()};
};

} // namespace

TEST_F(DeliveryTest, EveryCombinationOfTheSettingsDoesJustWhatTheySay)
{
    for (int bits = 0; bits < 24; ++bits) {
        const bool sound = bits & 1;
        const bool copy = bits & 2;
        const bool save = bits & 4;
        const auto after = allCases<AfterCapture>()[std::size_t(bits / 8)];
        settings.setPlaySound(sound);
        settings.setAutoCopy(copy);
        settings.setAutoSave(save);
        settings.setAfterCapture(after);
        QDir(settings.saveFolder()).removeRecursively();
        QGuiApplication::clipboard()->setText(u"antes"_qs);
        log.clear();
        delivery.deliver(shot);

        QStringList expected;
        if (sound)
            expected << u"sound"_qs;
        if (after == AfterCapture::editor)
            expected << u"forget"_qs << u"editor"_qs;
        else if (after == AfterCapture::thumbnail)
            expected << u"reactivate"_qs << u"thumbnail"_qs << (save ? u"saved"_qs : u"unsaved"_qs);
        else
            expected << u"reactivate"_qs << u"message"_qs
                     << (copy ? u"Captura copiada"_qs : u"Captura guardada"_qs)
                     << u"checkmark.circle.fill"_qs;
        EXPECT_EQ(log, expected) << bits;
        EXPECT_EQ(clipboardHasImage(), copy) << bits;
        EXPECT_EQ(files().size(), save ? 1 : 0) << bits;
        if (save) {
            EXPECT_TRUE(files().constFirst().startsWith(u"Pintalux Informe "));
        }
    }
}

TEST_F(DeliveryTest, AFailingSaveIsSilentAndLosesNothingElse)
{
    QFile inTheWay(settings.saveFolder());
    ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
    settings.setAutoSave(true);
    settings.setAfterCapture(AfterCapture::thumbnail);
    delivery.deliver(shot);
    EXPECT_EQ(log, (QStringList{u"reactivate"_qs, u"thumbnail"_qs, u"unsaved"_qs}));
    EXPECT_TRUE(clipboardHasImage());
}

TEST_F(DeliveryTest, RecognisedTextIsCopiedAndItsLinesAreCounted)
{
    struct Row {
        QString text;
        QString message;
    };
    for (const auto& row :
        {Row{u"hola"_qs, u"Texto copiado"_qs}, Row{u"uno\n\ndos\n"_qs, u"2 líneas de texto copiadas"_qs},
            Row{u"\n"_qs, u"0 líneas de texto copiadas"_qs}}) {
        log.clear();
        recognized = row.text;
        delivery.deliverText(shot);
        EXPECT_EQ(log, (QStringList{u"reactivate"_qs, u"message"_qs, row.message, u"text.viewfinder"_qs}));
        EXPECT_EQ(clipboardText(), row.text);
    }
    log.clear();
    recognized.clear();
    QGuiApplication::clipboard()->setText(u"antes"_qs);
    delivery.deliverText(shot);
    EXPECT_EQ(
        log.mid(1), (QStringList{u"message"_qs, u"No se encontró texto"_qs, u"text.magnifyingglass"_qs}));
    EXPECT_EQ(clipboardText(), u"antes");
}

TEST_F(DeliveryTest, APickedColourIsCopiedAndShownWithItsTint)
{
    delivery.deliverColor(u"#FF3B30"_qs);
    EXPECT_EQ(log,
        (QStringList{
            u"reactivate"_qs, u"message"_qs, u"Color #FF3B30 copiado"_qs, u"eyedropper"_qs, u"#ff3b30"_qs}));
    EXPECT_EQ(clipboardText(), u"#FF3B30");
}

TEST_F(DeliveryTest, ACancelledCaptureOnlyGivesTheFocusBack)
{
    delivery.cancelled();
    EXPECT_EQ(log, QStringList{u"reactivate"_qs});
    EXPECT_EQ(clipboardText(), u"antes");
}
