// SPDX-License-Identifier: MIT
#include "render/export/Exporter.h"

#include "platform/base/Error.h"
#include "platform/base/Files.h"
#include "platform/base/Parallel.h"
#include "platform/base/Worker.h"
#include "platform/graphics/GraphicsContext.h"
#include "platform/image/LargeImage.h"
#include "platform/image/PngEncoder.h"
#include "render/Renderer.h"

#include <QColorSpace>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QStringView>
#include <QTextBoundaryFinder>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace pintalux::Exporter {

namespace {

const QString productName = QStringLiteral("Pintalux");
const QString ending = QStringLiteral(".png");

constexpr int longestTitle = 60;     ///< characters as a person counts them
constexpr int longestFileName = 255; ///< bytes of UTF-8, the limit of nearly every file system
constexpr int longestNumber = 12;    ///< bytes kept for " (n)"

/// Slashes, colons, and what no file name can hold: null characters and halves of a surrogate pair.
QString withoutForbidden(QString text)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool isPair = text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        if (isPair)
            ++i;
        else if (text[i] == u'/' || text[i] == u':' || text[i].isNull() || text[i].isSurrogate())
            text[i] = u'-';
    }
    return text;
}

/// Without spaces and tabs at both ends; line breaks stay.
QString trimmedOfSpaces(QStringView text)
{
    const auto isSpace = [](QChar c) { return c == u'\t' || c.category() == QChar::Separator_Space; };
    while (!text.isEmpty() && isSpace(text.front()))
        text = text.mid(1);
    while (!text.isEmpty() && isSpace(text.back()))
        text.chop(1);
    return text.toString();
}

/// A title that starts with the product's name goes without it. A letter with an accent of its own on the
/// name's last letter is another word.
QString withoutProductName(const QString& title)
{
    if (!title.startsWith(productName, Qt::CaseInsensitive))
        return title;
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, title);
    characters.setPosition(productName.size());
    return characters.isAtBoundary() ? trimmedOfSpaces(QStringView(title).mid(productName.size())) : title;
}

/// As many whole characters, as a person counts them, as both limits allow.
QString cut(const QString& title, int characterLimit, qsizetype byteLimit)
{
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, title);
    qsizetype end = 0;
    for (int count = 0; count < characterLimit && characters.toNextBoundary() >= 0; ++count) {
        const auto next = characters.position();
        byteLimit -= QStringView(title).mid(end, next - end).toUtf8().size();
        if (byteLimit < 0)
            break;
        end = next;
    }
    return title.left(end);
}

/// Throws the error of a picture that could not be encoded.
void requireEncoded(const QByteArray& png)
{
    if (png.isEmpty())
        throw Error(Error::ownDomain, 1, u"No se pudo codificar el PNG."_s);
}

/// Makes the folder unless it exists, and makes sure that it is the person's own and closed to others.
/// False when it is not to be had.
bool ownPrivately(const QString& folder)
{
    const auto path = QFile::encodeName(folder);
    if (::mkdir(path, 0700) != 0 && errno != EEXIST)
        return false;
    const int descriptor = ::open(path, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    struct stat found { };
    const bool isOwn = ::fstat(descriptor, &found) == 0 && found.st_uid == ::geteuid()
        && ((found.st_mode & 0777) == 0700 || ::fchmod(descriptor, 0700) == 0);
    ::close(descriptor);
    return isOwn;
}

/// The folder that a session gives its person; none when there is none, or it is not what it should be.
std::optional<QString> runtimeFolder()
{
    const auto path = qEnvironmentVariable("XDG_RUNTIME_DIR");
    struct stat found { };
    const bool isOwn = path.startsWith(u'/') && ::stat(QFile::encodeName(path), &found) == 0
        && S_ISDIR(found.st_mode) && found.st_uid == ::geteuid() && (found.st_mode & 0077) == 0;
    return isOwn ? std::optional(path) : std::nullopt;
}

std::optional<QString> temporaryFolder()
{
    auto parent = runtimeFolder();
    if (!parent) {
        parent = u"%1/pintalux-%2"_s.arg(QDir::tempPath(), QString::number(::geteuid()));
        makeFolders(QDir::tempPath());
        if (!ownPrivately(*parent))
            return std::nullopt;
    }
    const auto folder = *parent + u'/' + productName;
    return ownPrivately(folder) ? std::optional(folder) : std::nullopt;
}

/// Pictures that were dragged away long ago: the folder often lies in memory and outlives the program.
void removeOldPictures(const QString& folder)
{
    const auto limit = QDateTime::currentDateTime().addDays(-1);
    for (const auto& file : QDir(folder).entryInfoList({u'*' + ending}, QDir::Files))
        if (file.lastModified() < limit)
            QFile::remove(file.filePath());
}

/// Saves under the default name, or the first with a number that is free.
QString saveInto(
    const QDir& folder, const QByteArray& png, const std::optional<QString>& name, const Clock& clock)
{
    auto candidate = folder.filePath(defaultFileName(name, clock()));
    // Asking first only spares the writing: what counts is that the name is free when the file gets it.
    for (int n = 2; QFileInfo::exists(candidate) || !writeNewFile(candidate, png); ++n) {
        auto fileName = defaultFileName(name, clock());
        fileName.chop(ending.size());
        candidate = folder.filePath(u"%1 (%2)%3"_s.arg(fileName, QString::number(n), ending));
    }
    return candidate;
}

} // namespace

QImage render(const Document& document, const BeautifySettings& beautify, EffectCache& cache)
{
    constexpr double mostBytes = double(1 << 30);
    const auto composition = Renderer::compositionSize(document.image, beautify, document.pixelScale);
    if (composition.width() < 1 || composition.height() < 1
        || composition.width() * composition.height() * 4 > mostBytes)
        return {};
    const QSize wholePixels(int(composition.width()), int(composition.height()));
    auto image = clearedImage(wholePixels, QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        return {};
    image.setColorSpace(QColorSpace::SRgb);
    QPainter painter(&image);
    GraphicsContext context(painter);
    Renderer::draw(document, beautify, cache, {}, context);
    return image;
}

QImage redacted(const Document& document, EffectCache& cache)
{
    auto readable = document;
    readable.annotations.removeIf([](const auto& mark) { return mark.kind != AnnotationKind::blur; });
    return readable.annotations.isEmpty() ? document.image : render(readable, {.enabled = false}, cache);
}

std::optional<QByteArray> pngData(const QImage& image, double pixelScale)
{
    return PngEncoder::encode(image, pixelScale);
}

QFuture<QByteArray> encode(const QImage& image, double pixelScale)
{
    // Threads of its own, so that nobody who pastes waits for other work.
    static Worker& threads = *new Worker(usefulThreads());
    return runOn(threads, [image, pixelScale] { return pngData(image, pixelScale).value_or(QByteArray()); });
}

QString defaultFileName(const std::optional<QString>& name, const QDateTime& now)
{
    const auto stamp
        = QLocale(QLocale::Spanish, QLocale::Spain).toString(now, u"yyyy-MM-dd 'a las' HH.mm.ss");
    const auto plain = productName + u' ' + stamp + ending;
    const auto title = withoutProductName(withoutForbidden(name.value_or(QString())).trimmed());
    const auto shown = cut(title, longestTitle, longestFileName - longestNumber - plain.toUtf8().size() - 1);
    return shown.isEmpty() ? plain : productName + u' ' + shown + u' ' + stamp + ending;
}

void write(const QImage& image, double pixelScale, const QString& path)
{
    write(pngData(image, pixelScale).value_or(QByteArray()), path);
}

void write(const QByteArray& png, const QString& path)
{
    requireEncoded(png);
    replaceFile(path, png);
}

QString quickSave(const QImage& image, double pixelScale, const QString& folder,
    const std::optional<QString>& name, const Clock& clock)
{
    return quickSave(pngData(image, pixelScale).value_or(QByteArray()), folder, name, clock);
}

QString quickSave(
    const QByteArray& png, const QString& folder, const std::optional<QString>& name, const Clock& clock)
{
    requireEncoded(png);
    makeFolders(folder);
    try {
        return saveInto(QDir(folder), png, name, clock);
    } catch (const Error& error) {
        // Some disks take no question mark or no long name. Better without its title than not at all.
        if (!name || error.code != QFileDevice::OpenError)
            throw;
        return saveInto(QDir(folder), png, std::nullopt, clock);
    }
}

Saving startQuickSave(const QFuture<QByteArray>& png, const QString& folder,
    const std::optional<QString>& name, const Clock& clock)
{
    const auto stamp = clock();
    const auto save = [=] { return quickSave(png.result(), folder, name, [=] { return stamp; }); };
    return {stamp, runOn(savingThread(), save)};
}

Worker& savingThread()
{
    static Worker& thread = *new Worker;
    return thread;
}

std::optional<QString> temporaryFile(
    const QImage& image, double pixelScale, const std::optional<QString>& name, const QDateTime& now)
{
    return temporaryFile(pngData(image, pixelScale).value_or(QByteArray()), name, now);
}

std::optional<QString> temporaryFile(
    const QByteArray& png, const std::optional<QString>& name, const QDateTime& now)
{
    try {
        requireEncoded(png);
        const auto folder = temporaryFolder();
        if (!folder)
            return std::nullopt;
        removeOldPictures(*folder);
        const auto path = *folder + u'/' + defaultFileName(name, now);
        replaceFile(path, png, Audience::onlyOwner);
        return path;
    } catch (const Error&) {
        return std::nullopt;
    }
}

} // namespace pintalux::Exporter
