// SPDX-License-Identifier: MIT

// Has work under way when its end comes.
//   pintalux_ending reading        ends by itself while a text is being read that cannot be stopped
//   pintalux_ending saving FILE    saves for a while; its display server is to go meanwhile

#include "app/QuitSignals.h"
#include "app/messages/HUD.h"
#include "capture/text/OCR.h"
#include "platform/base/ForeignCall.h"
#include "platform/base/Worker.h"
#include "render/export/Exporter.h"

#include <QApplication>
#include <QThread>
#include <QTimer>

#include <cstdio>
#include <cstdlib>

using namespace pintalux;

namespace {

constexpr int longMilliseconds = 800;

/// Uses the toolkit after a time in which nothing stops it.
class Unstoppable : public TextRecognizer {
public:
    std::atomic<bool> hasBegun = false;

    QList<TextObservation> recognize(const QImage& image, const std::atomic<bool>&) override
    {
        {
            const ForeignCall call;
            hasBegun = true;
            QThread::msleep(longMilliseconds);
        }
        std::printf("outlived its application: %d\n", !QCoreApplication::instance());
        std::fflush(stdout);
        const auto converted = image.convertToFormat(QImage::Format_RGBA64); // on the toolkit's threads
        return {{QString::number(converted.width()), QRectF(0, 0, 1, 1)}};
    }
};

int endWhileReading(int argc, char** argv)
{
    const auto recognizer = std::make_shared<Unstoppable>();
    {
        QApplication application(argc, argv);
        OCR::setRecognizer(recognizer);
        QImage page(4000, 4000, QImage::Format_RGB32);
        OCR::recognize(page, [](const auto&) {});
        while (!recognizer->hasBegun)
            QThread::msleep(1);
    }
    QThread::msleep(2 * longMilliseconds);
    std::puts("ended");
    std::fflush(stdout);
    std::_Exit(OCR::isStillReading() ? EXIT_SUCCESS : EXIT_FAILURE);
}

int saveMeanwhile(int argc, char** argv)
{
    QApplication application(argc, argv);
    finishSavingWithoutDisplay();
    const auto path = QString::fromLocal8Bit(argv[2]);
    HUD::showUntilReplaced(QStringLiteral("Guardando"), QStringLiteral("sparkles"));
    QTimer::singleShot(0, [path] {
        runOn(Exporter::savingThread(), [path] {
            std::puts("saving");
            std::fflush(stdout);
            QThread::msleep(longMilliseconds);
            QImage picture(100, 100, QImage::Format_RGB32);
            picture.fill(Qt::red);
            Exporter::write(picture, 1, path);
            return true;
        });
    });
    return QApplication::exec();
}

} // namespace

int main(int argc, char** argv)
{
    if (argc == 2 && qstrcmp(argv[1], "reading") == 0)
        return endWhileReading(argc, argv);
    if (argc == 3 && qstrcmp(argv[1], "saving") == 0)
        return saveMeanwhile(argc, argv);
    return 2;
}
