// SPDX-License-Identifier: MIT

// Opening a picture: whatever the file holds, there is a picture within the limits or a sentence.

#include "platform/base/Error.h"
#include "platform/image/DecoderProcess.h"
#include "platform/image/ImageFile.h"

#include <QGuiApplication>

#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>

using namespace Qt::StringLiterals;

using namespace pintalux;

namespace {

void require(bool holds)
{
    if (!holds)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    if (const auto decoded = DecoderProcess::serve(*argc, *argv))
        std::_Exit(*decoded);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static const QGuiApplication application(*argc, *argv); // the decoders are its plug-ins
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const quint8* data, std::size_t size)
{
    static const int descriptor = memfd_create("picture", MFD_CLOEXEC);
    static const auto path = u"/proc/self/fd/%1"_s.arg(descriptor);
    require(ftruncate(descriptor, 0) == 0 && pwrite(descriptor, data, size, 0) == ssize_t(size));
    try {
        const auto file = readImageFile(path);
        require(!file.image.isNull() && file.pixelScale() >= 1);
        require(file.image.sizeInBytes() <= qsizetype(1) << 30);
        require(file.image.format() == QImage::Format_RGB32
            || file.image.format() == QImage::Format_ARGB32_Premultiplied);
    } catch (const Error& error) {
        require(!error.localizedDescription.isEmpty());
    }
    return 0;
}
