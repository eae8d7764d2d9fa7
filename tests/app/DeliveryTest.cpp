// SPDX-License-Identifier: MIT
#include "app/Delivery.h"

#include "Gestures.h"
#include "Pictures.h"
#include "platform/base/UserDefaults.h"
#include "platform/base/Worker.h"
#include "render/export/Exporter.h"
#include "settings/Settings.h"

namespace {

class DeliveryTest : public testing::Test {
protected:
    DeliveryTest()
    {
        settings.setSaveFolder(folder.filePath(u"capturas"_s));
        QGuiApplication::clipboard()->setText(u"antes"_s);
        settings.setPlaySound(false);
        settings.setAutoCopy(true);
        settings.setAutoSave(false);
        shot.image = test::plain({30, 20}, Qt::darkCyan);
        shot.pixelScale = 2;
        shot.suggestedName = u"Informe"_s;
    }

    Delivery::Routes routes()
    {
        return {
            .reactivatePrevious = [this] { log << u"reactivate"_s; },
            .forgetPrevious = [this] { log << u"forget"_s; },
            .playSound = [this] { log << u"sound"_s; },
            .openEditor = [this](const CaptureResult&) { log << u"editor"_s; },
            .showThumbnail =
                [this](const CaptureResult&, const std::optional<Exporter::Saving>& file) {
                    log << u"thumbnail"_s << (file ? u"saved"_s : u"unsaved"_s);
                    saving = file;
                },
            .recognizeText
            = [this](const QImage&, const std::function<void(const QString&)>& done) { done(recognized); },
            .showMessage =
                [this](const QString& message, const QString& symbol, const QColor& tint) {
                    log << u"message"_s << message << symbol;
                    if (tint.isValid())
                        log << tint.name();
                },
        };
    }

    /// Once all is written.
    QStringList files() const
    {
        Exporter::savingThread().waitForDone();
        return namesInFolder();
    }
    QStringList namesInFolder() const
    {
        return QDir(settings.saveFolder()).entryList(QDir::Files | QDir::Hidden);
    }
    static bool clipboardHasImage()
    {
        return QGuiApplication::clipboard()->mimeData()->hasFormat(u"image/png"_s);
    }
    static QString clipboardText() { return QGuiApplication::clipboard()->text(); }

    QTemporaryDir folder;
    UserDefaults store = UserDefaults::inMemory();
    Settings settings{store};
    CaptureResult shot;
    QStringList log;
    QString recognized;
    std::optional<Exporter::Saving> saving;
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
        QGuiApplication::clipboard()->setText(u"antes"_s);
        log.clear();
        delivery.deliver(shot);

        QStringList expected;
        if (sound)
            expected << u"sound"_s;
        if (after == AfterCapture::editor)
            expected << u"forget"_s << u"editor"_s;
        else if (after == AfterCapture::thumbnail)
            expected << u"reactivate"_s << u"thumbnail"_s << (save ? u"saved"_s : u"unsaved"_s);
        else
            expected << u"reactivate"_s << u"message"_s
                     << (copy ? u"Captura copiada"_s : u"Captura guardada"_s) << u"checkmark.circle.fill"_s;
        gesture::waitFor([&] { return log.size() >= expected.size(); }); // "Guardada" is told when it is
        EXPECT_EQ(log, expected) << bits;
        EXPECT_EQ(clipboardHasImage(), copy) << bits;
        EXPECT_EQ(files().size(), save ? 1 : 0) << bits;
        if (save) {
            EXPECT_TRUE(files().constFirst().startsWith(u"Pintalux Informe "));
        }
    }
}

// A full disk must not cost a capture.
TEST_F(DeliveryTest, WhatNothingElseKeepsIsCopiedWhenItCannotBeSaved)
{
    QFile inTheWay(settings.saveFolder());
    ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
    settings.setAutoSave(true);
    settings.setAfterCapture(AfterCapture::thumbnail);
    delivery.deliver(shot);
    ASSERT_TRUE(saving);
    EXPECT_THROW(saving->path.result(), Error) << "the card is to learn of it";
    EXPECT_FALSE(log.contains(u"message"_s)) << "it tells by itself";
    settings.setAfterCapture(AfterCapture::copyOnly);
    for (const bool copy : {false, true}) {
        settings.setAutoCopy(copy);
        QGuiApplication::clipboard()->setText(u"antes"_s);
        log.clear();
        delivery.deliver(shot);
        files();
        ASSERT_TRUE(gesture::waitFor([&] { return log.contains(u"message"_s); }));
        const auto message = copy ? QStringList{u"Captura copiada"_s, u"checkmark.circle.fill"_s}
                                  : QStringList{u"No se pudo guardar; la captura está en el portapapeles"_s,
                                      u"exclamationmark.triangle"_s};
        EXPECT_EQ(log, (QStringList{u"reactivate"_s, u"message"_s} + message));
        EXPECT_TRUE(clipboardHasImage());
    }
}

TEST_F(DeliveryTest, ASlowDiskHoldsNothingUp)
{
    QSemaphore disk;
    const auto busy = runOn(Exporter::savingThread(), [&] {
        disk.acquire();
        return true;
    });
    settings.setAutoSave(true);
    settings.setAfterCapture(AfterCapture::thumbnail);
    delivery.deliver(shot);
    ASSERT_TRUE(saving) << "the card waits for the disk";
    EXPECT_TRUE(clipboardHasImage());
    EXPECT_FALSE(
        QImage::fromData(QGuiApplication::clipboard()->mimeData()->data(u"image/png"_s), "PNG").isNull());
    EXPECT_TRUE(namesInFolder().isEmpty());
    const auto name = Exporter::defaultFileName(shot.suggestedName, saving->stamp);
    disk.release();
    EXPECT_EQ(files(), QStringList{name});
    EXPECT_EQ(saving->path.result(), QDir(settings.saveFolder()).filePath(name));
}

TEST_F(DeliveryTest, RecognisedTextIsCopiedAndItsLinesAreCounted)
{
    struct Row {
        QString text;
        QString message;
    };
    for (const auto& row :
        {Row{u"hola"_s, u"Texto copiado"_s}, Row{u"uno\n\ndos\n"_s, u"2 líneas de texto copiadas"_s},
            Row{u"\n"_s, u"0 líneas de texto copiadas"_s}}) {
        log.clear();
        recognized = row.text;
        delivery.deliverText(shot);
        EXPECT_EQ(log, (QStringList{u"reactivate"_s, u"message"_s, row.message, u"text.viewfinder"_s}));
        EXPECT_EQ(clipboardText(), row.text);
    }
    log.clear();
    recognized.clear();
    QGuiApplication::clipboard()->setText(u"antes"_s);
    delivery.deliverText(shot);
    EXPECT_EQ(log.mid(1), (QStringList{u"message"_s, u"No se encontró texto"_s, u"text.magnifyingglass"_s}));
    EXPECT_EQ(clipboardText(), u"antes");
}

TEST_F(DeliveryTest, APickedColourIsCopiedAndShownWithItsTintAndACancelledCaptureChangesNothing)
{
    delivery.cancelled();
    EXPECT_EQ(log, QStringList{u"reactivate"_s});
    EXPECT_EQ(clipboardText(), u"antes");
    log.clear();
    delivery.deliverColor(u"#FF3B30"_s);
    EXPECT_EQ(log,
        (QStringList{
            u"reactivate"_s, u"message"_s, u"Color #FF3B30 copiado"_s, u"eyedropper"_s, u"#ff3b30"_s}));
    EXPECT_EQ(clipboardText(), u"#FF3B30");
}
