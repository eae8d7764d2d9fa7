// SPDX-License-Identifier: MIT
#include "app/commandline/AnnotateCommand.h"

#include "model/MarksFile.h"
#include "platform/base/Error.h"
#include "platform/base/Files.h"
#include "platform/image/ImageFile.h"
#include "render/export/Exporter.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace pintalux::AnnotateCommand {

namespace {

QByteArray readMarksText(const QString& path)
{
    constexpr qint64 mostBytes = 64 << 20;
    if (!QFileInfo::exists(path))
        throw fileError(ENOENT, path);
    if (QFileInfo(path).isDir())
        throw fileError(EISDIR, path);
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw fileError(EACCES, path);
    auto bytes = file.read(mostBytes + 1);
    if (bytes.size() > mostBytes)
        throw Error(
            Error::fileDomain, 0, u"«%1» es demasiado grande para ser un archivo de marcas."_s.arg(path));
    return bytes;
}

MarksFile readMarks(const QString& path)
{
    const auto folder = QFileInfo(path).absoluteDir();
    const auto load
        = [&folder](const QString& name) { return readImageFile(folder.absoluteFilePath(name)).image; };
    const auto json = readMarksText(path);
    try {
        return MarksFile::parse(json, load);
    } catch (const Error& error) {
        throw Error(error.domain, error.code, u"«%1»: %2"_s.arg(path, error.localizedDescription));
    }
}

void annotate(const CommandLine& commandLine)
{
    const auto picture = readImageFile(commandLine.picture);
    const auto marks = readMarks(commandLine.marksFile);
    if (commandLine.checkOnly) {
        const auto count = marks.annotations.size();
        const auto sentence = count == 1 ? u"Correcto: 1 marca.\n"_s : u"Correcto: %1 marcas.\n"_s.arg(count);
        std::fputs(sentence.toUtf8().constData(), stdout);
        return;
    }
    const Document document{
        picture.image, marks.annotations, marks.pixelScale.value_or(picture.pixelScale())};
    EffectCache cache;
    const auto image = Exporter::render(document, marks.beautify, cache);
    if (image.isNull())
        throw Error(Error::ownDomain, 3, u"No se pudo crear la imagen: es demasiado grande."_s);
    Exporter::write(image, document.pixelScale, commandLine.outputFile);
}

} // namespace

int run(const CommandLine& commandLine)
{
    try {
        annotate(commandLine);
        return EXIT_SUCCESS;
    } catch (const Error& error) {
        std::fprintf(stderr, "pintalux: %s\n", error.localizedDescription.toUtf8().constData());
        return EXIT_FAILURE;
    }
}

} // namespace pintalux::AnnotateCommand
