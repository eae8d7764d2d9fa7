// SPDX-License-Identifier: MIT
#include "platform/image/ImageFile.h"

#include "platform/base/Error.h"
#include "platform/base/Files.h"
#include "platform/image/DecoderProcess.h"
#include "platform/image/HeifImage.h"

#include <QFile>
#include <QFileInfo>
#include <QImageReader>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

using Outcome = DecodedImage::Outcome;

[[noreturn]] void fail(int code, const QString& sentence) { throw Error(Error::fileDomain, code, sentence); }

/// Told without reading all of it: among files that somebody dropped there may be a film.
bool beginsLikeAnImage(QFile& file)
{
    constexpr qint64 headLength = 4096;
    if (looksLikeHeif(file.peek(headLength)))
        return true;
    QImageReader reader(&file);
    reader.setDecideFormatFromContent(true);
    const bool isKnown = reader.canRead();
    file.seek(0);
    return isKnown;
}

QByteArray readBytes(const QString& path)
{
    const QFileInfo info(path);
    const QString name = info.fileName();
    if (!info.exists())
        fail(QFileDevice::OpenError, u"No existe el archivo «%1»."_s.arg(name));
    // Nothing that could make the program wait, or never ends.
    if (!info.isFile())
        fail(QFileDevice::OpenError, u"«%1» no es un archivo."_s.arg(name));
    QFile file;
    if (openFile(path, file) != 0)
        fail(QFileDevice::OpenError, u"No se pudo leer el archivo «%1»."_s.arg(name));
    if (!beginsLikeAnImage(file) && file.error() == QFileDevice::NoError)
        fail(QFileDevice::ReadError, u"«%1» no es una imagen que se pueda abrir."_s.arg(name));
    if (file.size() > DecodedImage::memoryLimit)
        fail(QFileDevice::ResourceError, u"La imagen «%1» es demasiado grande."_s.arg(name));
    QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        fail(file.error(), u"No se pudo leer el archivo «%1»."_s.arg(name));
    return bytes;
}

/// What nearly every picture is comes from decoders that have been tried well enough to run here.
bool isCommon(const QByteArray& bytes)
{
    return bytes.startsWith("\x89PNG\r\n\x1a\n") || bytes.startsWith("\xff\xd8\xff");
}

DecodedImage decode(const QByteArray& bytes)
{
    return isCommon(bytes) ? decodeHere(bytes) : DecoderProcess::decode(bytes);
}

[[noreturn]] void failToDecode(Outcome outcome, const QString& name)
{
    switch (outcome) {
    case Outcome::tooLarge:
        fail(QFileDevice::ResourceError, u"La imagen «%1» es demasiado grande."_s.arg(name));
    case Outcome::tooSlow:
        fail(QFileDevice::TimeOutError, u"La imagen «%1» tarda demasiado en abrirse."_s.arg(name));
    case Outcome::noRoomToDecode:
        fail(QFileDevice::ResourceError, u"No hay memoria para abrir la imagen «%1»."_s.arg(name));
    case Outcome::picture:
    case Outcome::unreadable:
        break;
    }
    fail(QFileDevice::ReadError, u"«%1» no es una imagen que se pueda abrir."_s.arg(name));
}

} // namespace

double ImageFile::pixelScale() const
{
    // More than anything resolves is a mistake, and would make every mark as wide as a house.
    constexpr double mostDotsPerInch = 100'000;
    if (!dotsPerInch || !(*dotsPerInch > 100 && *dotsPerInch <= mostDotsPerInch))
        return 1;
    return std::max(1., std::round(*dotsPerInch / 72));
}

QImage decodedImage(const QByteArray& bytes) { return decode(bytes).image; }

ImageFile readImageFile(const QString& path)
{
    auto decoded = decode(readBytes(path));
    if (decoded.outcome != Outcome::picture)
        failToDecode(decoded.outcome, QFileInfo(path).fileName());
    return {std::move(decoded.image), decoded.dotsPerInch};
}

} // namespace pintalux
