// SPDX-License-Identifier: MIT

// The marks file: what is accepted has only finite numbers and can be measured.

#include "model/MarksFile.h"
#include "platform/base/Error.h"

#include <QGuiApplication>

#include <cmath>
#include <cstdlib>

using namespace Qt::StringLiterals;

using namespace pintalux;

namespace {

void require(bool holds)
{
    if (!holds)
        std::abort();
}

bool isFinite(const QRectF& rect)
{
    return std::isfinite(rect.x()) && std::isfinite(rect.y()) && std::isfinite(rect.width())
        && std::isfinite(rect.height());
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static const QGuiApplication application(*argc, *argv); // measuring a text takes fonts
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const quint8* data, std::size_t size)
{
    const auto json = QByteArray(reinterpret_cast<const char*>(data), qsizetype(size));
    const auto loadImage = [](const QString& path) {
        if (path.contains(u'x'))
            throw Error(Error::ownDomain, 1, u"No es una imagen."_s);
        return QImage(4, 4, QImage::Format_RGB32);
    };
    try {
        for (const auto& mark : MarksFile::parse(json, loadImage).annotations) {
            require(isFinite(mark.bounds()));
            mark.hitTest(mark.start, 4);
        }
    } catch (const Error& error) {
        require(!error.localizedDescription.isEmpty());
    }
    return 0;
}
