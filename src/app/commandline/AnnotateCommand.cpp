// SPDX-License-Identifier: MIT
#include "app/commandline/AnnotateCommand.h"

#include "app/commandline/PictureOutput.h"
#include "model/MarksFile.h"
#include "platform/base/Error.h"
#include "platform/base/Files.h"
#include "platform/image/ImageFile.h"
#include "render/export/Exporter.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryFile>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace pintalux::AnnotateCommand {

namespace {

const QString standardInput = u"-"_s;

/// What a person calls the input.
QString nameOf(const QString& path) { return path == standardInput ? u"entrada estándar"_s : path; }

/// At most so many bytes and one more, which tells that there would have been others.
QByteArray readStandardInput(qint64 mostBytes)
{
    QFile input;
    if (!input.open(stdin, QIODevice::ReadOnly))
        throw fileError(errno, nameOf(standardInput));
    return input.read(mostBytes + 1);
}

ImageFile readPicture(const QString& path)
{
    if (path != standardInput)
        return readImageFile(path);
    constexpr qint64 mostBytes = 1 << 30;
    const auto bytes = readStandardInput(mostBytes);
    QTemporaryFile copy; // what reads pictures looks at them more than once
    if (bytes.size() > mostBytes || !copy.open() || copy.write(bytes) != bytes.size() || !copy.flush())
        throw Error(Error::fileDomain, 0, u"No se pudo leer la entrada estándar."_s);
    try {
        return readImageFile(copy.fileName());
    } catch (const Error& error) {
        auto sentence = error.localizedDescription;
        throw Error(error.domain, error.code,
            sentence.replace(QFileInfo(copy.fileName()).fileName(), nameOf(standardInput)));
    }
}

QByteArray readMarksText(const QString& path)
{
    constexpr qint64 mostBytes = 64 << 20;
    QByteArray bytes;
    if (path == standardInput) {
        bytes = readStandardInput(mostBytes);
    } else {
        if (!QFileInfo::exists(path))
            throw fileError(ENOENT, path);
        if (QFileInfo(path).isDir())
            throw fileError(EISDIR, path);
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            throw fileError(EACCES, path);
        bytes = file.read(mostBytes + 1);
    }
    if (bytes.size() > mostBytes)
        throw Error(Error::fileDomain, 0,
            u"«%1» es demasiado grande para ser un archivo de marcas."_s.arg(nameOf(path)));
    return bytes;
}

/// Paths within the marks are relative to their file; from standard input, to the current folder.
MarksFile readMarks(const QString& path)
{
    const auto folder = QFileInfo(path).absoluteDir();
    const auto load
        = [&folder](const QString& name) { return readImageFile(folder.absoluteFilePath(name)).image; };
    const auto json = readMarksText(path);
    try {
        return MarksFile::parse(json, load);
    } catch (const Error& error) {
        throw Error(error.domain, error.code, u"«%1»: %2"_s.arg(nameOf(path), error.localizedDescription));
    }
}

void print(const QString& text) { std::fputs(text.toUtf8().constData(), stdout); }

void print(const QJsonObject& object)
{
    print(QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact)) + u'\n');
}

void annotate(const CommandLine& commandLine)
{
    if (!commandLine.checkOnly)
        PictureOutput::requireName(commandLine.outputFile);
    const auto picture = readPicture(commandLine.picture);
    const auto marks = readMarks(commandLine.marksFile);
    if (commandLine.checkOnly) {
        const auto count = marks.annotations.size();
        if (commandLine.json)
            return print(QJsonObject{{u"ok"_s, true}, {u"annotations"_s, qint64(count)}});
        return print(count == 1 ? u"Correcto: 1 marca.\n"_s : u"Correcto: %1 marcas.\n"_s.arg(count));
    }
    const Document document{
        picture.image, marks.annotations, marks.pixelScale.value_or(picture.pixelScale())};
    EffectCache cache;
    const auto image = Exporter::render(document, marks.beautify, cache);
    if (image.isNull())
        throw Error(Error::ownDomain, 3, u"No se pudo crear la imagen: es demasiado grande."_s);
    PictureOutput::write(image, document.pixelScale, commandLine.outputFile);
}

} // namespace

int run(const CommandLine& commandLine)
{
    try {
        annotate(commandLine);
        return EXIT_SUCCESS;
    } catch (const Error& error) {
        if (commandLine.json)
            print(QJsonObject{{u"ok"_s, false}, {u"error"_s, error.localizedDescription}});
        else
            std::fprintf(stderr, "pintalux: %s\n", error.localizedDescription.toUtf8().constData());
        return EXIT_FAILURE;
    }
}

} // namespace pintalux::AnnotateCommand
