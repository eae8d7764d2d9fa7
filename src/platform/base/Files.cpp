// SPDX-License-Identifier: MIT
#include "platform/base/Files.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

struct FailureRow {
    int systemError;
    QFileDevice::FileError code;
    QStringView sentence; ///< %1 is the path
};

constexpr std::array<FailureRow, 13> failureTable{{
    {ENOSPC, QFileDevice::ResourceError, u"No queda espacio en el disco para «%1»."},
    {EDQUOT, QFileDevice::ResourceError, u"Tu cuota de disco no alcanza para «%1»."},
    {EFBIG, QFileDevice::ResourceError, u"«%1» es demasiado grande para este disco."},
    {EACCES, QFileDevice::PermissionsError, u"No tienes permiso para usar «%1»."},
    {EPERM, QFileDevice::PermissionsError, u"No tienes permiso para usar «%1»."},
    {EROFS, QFileDevice::PermissionsError, u"El disco de «%1» es de solo lectura."},
    {ENOENT, QFileDevice::OpenError, u"«%1» no existe."},
    {ENOTDIR, QFileDevice::OpenError, u"«%1» no es una carpeta."},
    {EISDIR, QFileDevice::OpenError, u"«%1» es una carpeta."},
    {ENXIO, QFileDevice::OpenError, u"«%1» no es un archivo."},
    {ENAMETOOLONG, QFileDevice::OpenError, u"El nombre de «%1» es demasiado largo."},
    {EINVAL, QFileDevice::OpenError, u"El disco no admite el nombre de «%1»."},
    {ETIMEDOUT, QFileDevice::TimeOutError, u"Otro programa está usando «%1»."},
}};
constexpr FailureRow otherFailure{0, QFileDevice::WriteError, u"No se pudo escribir «%1»."};

/// Calls again for as long as a signal interrupts.
template <typename Call> auto uninterrupted(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

std::optional<struct stat> status(const QString& path)
{
    struct stat found { };
    if (::stat(QFile::encodeName(path).constData(), &found) != 0)
        return std::nullopt;
    return found;
}

QString folderOf(const QString& path) { return QFileInfo(path).path(); }

/// Why nothing could be made in `folder`. File systems that take no files, such as /proc, say that what is
/// there does not exist.
Error creationError(int systemError, const QString& folder)
{
    return fileError(systemError == ENOENT && status(folder) ? EPERM : systemError, folder);
}

/// A finished file for its later place `target`. Where the file system has them it has no name yet, so that
/// not even the end of the process leaves it behind; elsewhere it stands beside the target under a name of
/// its own, and is removed unless it has been moved.
class FinishedFile {
public:
    FinishedFile(const QString& target, const QByteArray& content, mode_t creationMode)
        : folder(folderOf(target))
        , bytes(content)
        , mode(creationMode)
    {
        if (!openUnnamed())
            openNamed();
        if (const int failure = fill()) {
            close();
            remove();
            throw fileError(failure, target);
        }
    }
    FinishedFile(const FinishedFile&) = delete;
    FinishedFile& operator=(const FinishedFile&) = delete;
    ~FinishedFile()
    {
        close();
        remove();
    }

    /// 0 or the errno.
    int moveOver(const QString& target)
    {
        if (const int failure = giveName())
            return failure;
        if (const int failure = close())
            return failure;
        if (::rename(QFile::encodeName(path).constData(), QFile::encodeName(target).constData()) != 0)
            return errno;
        path.clear();
        return 0;
    }

    int moveTo(const QString& freeName)
    {
        if (path.isEmpty()) {
            const int failure = linkTo(freeName);
            if (failure == 0 || failure == EEXIST)
                return failure;
            if (const int unnamed = giveName())
                return unnamed;
        }
        if (const int failure = close())
            return failure;
        const int failure = moveToFreeName(path, freeName);
        if (failure == 0)
            path.clear();
        return failure;
    }

    /// Whatever the person's umask.
    void setMode(mode_t exact)
    {
        exactMode = exact;
        ::fchmod(descriptor, exact);
    }

private:
    bool openUnnamed()
    {
        if (::access("/proc/self/fd", X_OK) != 0) // through which it gets its name
            return false;
        descriptor = uninterrupted([&] {
            return ::open(QFile::encodeName(folder).constData(), O_WRONLY | O_TMPFILE | O_CLOEXEC, mode);
        });
        return descriptor >= 0;
    }

    void openNamed()
    {
        do {
            path = freshName();
            descriptor = uninterrupted([&] {
                return ::open(
                    QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
            });
        } while (descriptor < 0 && errno == EEXIST);
        if (descriptor >= 0)
            return;
        path.clear();
        throw creationError(errno, folder);
    }

    QString freshName() const
    {
        return folder + u"/.pintalux-"_s + QString::number(QRandomGenerator::system()->generate64(), 36);
    }

    int linkTo(const QString& name) const
    {
        const auto unnamed = QByteArray("/proc/self/fd/") + QByteArray::number(descriptor);
        const int result = ::linkat(
            AT_FDCWD, unnamed.constData(), AT_FDCWD, QFile::encodeName(name).constData(), AT_SYMLINK_FOLLOW);
        return result == 0 ? 0 : errno;
    }

    /// A name of its own for what has none. Some file systems make files without a name and give them none.
    int giveName()
    {
        if (!path.isEmpty())
            return 0;
        auto name = freshName();
        int failure = linkTo(name);
        while (failure == EEXIST)
            failure = linkTo(name = freshName());
        if (failure == 0) {
            path = name;
            return 0;
        }
        close();
        openNamed();
        if (exactMode)
            ::fchmod(descriptor, *exactMode);
        return fill();
    }

    int fill() const
    {
        for (qsizetype done = 0; done < bytes.size();) {
            const auto written = uninterrupted(
                [&] { return ::write(descriptor, bytes.constData() + done, size_t(bytes.size() - done)); });
            if (written < 0)
                return errno;
            done += written;
        }
        // Some file systems report a full disk only here; others cannot flush at all, which is no failure.
        if (::fsync(descriptor) != 0 && errno != EINVAL && errno != ENOSYS && errno != EOPNOTSUPP)
            return errno;
        return 0;
    }

    /// 0 or the errno: some file systems report a full disk only here.
    int close()
    {
        const bool failed = descriptor >= 0 && ::close(std::exchange(descriptor, -1)) != 0;
        return failed && errno != EINTR ? errno : 0;
    }

    void remove()
    {
        if (!path.isEmpty())
            ::unlink(QFile::encodeName(path).constData());
    }

    const QString folder;
    const QByteArray bytes; ///< shared
    const mode_t mode;
    std::optional<mode_t> exactMode;
    int descriptor = -1;
    QString path; ///< empty while it has no name of its own
};

int reserveThenReplace(const char* from, const char* to)
{
    const int descriptor
        = uninterrupted([&] { return ::open(to, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600); });
    if (descriptor < 0)
        return errno;
    ::close(descriptor);
    if (::rename(from, to) == 0)
        return 0;
    const int failure = errno;
    ::unlink(to);
    return failure;
}

} // namespace

Error fileError(int systemError, const QString& path)
{
    const auto found = std::ranges::find(failureTable, systemError, &FailureRow::systemError);
    const auto& row = found == failureTable.end() ? otherFailure : *found;
    return {Error::fileDomain, row.code, row.sentence.toString().arg(QDir::toNativeSeparators(path))};
}

int openFile(const QString& path, QFile& file)
{
    // Non-blocking, so that a pipe under this name cannot hold the program.
    const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        return errno;
    if (!file.open(descriptor, QIODevice::ReadOnly | QIODevice::Unbuffered, QFileDevice::AutoCloseHandle)) {
        ::close(descriptor);
        return EIO;
    }
    struct stat found { };
    if (::fstat(descriptor, &found) != 0)
        return errno;
    if (!S_ISREG(found.st_mode))
        return S_ISDIR(found.st_mode) ? EISDIR : ENXIO;
    return 0;
}

int readFile(const QString& path, qint64 mostBytes, QByteArray& bytes)
{
    QFile file;
    if (const int failure = openFile(path, file))
        return failure;
    if (file.size() > mostBytes)
        return EFBIG;
    bytes = file.read(mostBytes + 1);
    if (file.error() != QFileDevice::NoError)
        return EIO;
    return bytes.size() > mostBytes ? EFBIG : 0;
}

void makeFolders(const QString& path, Audience audience)
{
    const auto cleaned = QDir::cleanPath(path);
    if (const auto found = status(cleaned)) {
        if (S_ISDIR(found->st_mode))
            return;
        throw fileError(ENOTDIR, cleaned);
    }
    const auto parent = folderOf(cleaned);
    // A file in the place of a folder above is found, and named, further up.
    if ((errno != ENOENT && errno != ENOTDIR) || parent == cleaned || cleaned.isEmpty())
        throw fileError(errno, cleaned);
    makeFolders(parent, audience);
    const mode_t mode = audience == Audience::onlyOwner ? 0700 : 0777;
    if (::mkdir(QFile::encodeName(cleaned).constData(), mode) == 0)
        return;
    if (errno != EEXIST)
        throw creationError(errno, parent);
    if (const auto found = status(cleaned); !found || !S_ISDIR(found->st_mode))
        throw fileError(ENOTDIR, cleaned);
}

std::optional<Error> whyUnusable(const QString& folder)
{
    const auto cleaned = QDir::cleanPath(folder);
    if (const auto found = status(cleaned)) {
        if (!S_ISDIR(found->st_mode))
            return fileError(ENOTDIR, cleaned);
        const bool isOpen = ::access(QFile::encodeName(cleaned).constData(), W_OK | X_OK) == 0;
        return isOpen ? std::nullopt : std::optional(fileError(errno, cleaned));
    }
    const int problem = errno;
    const auto parent = folderOf(cleaned);
    if (problem != ENOENT || parent == cleaned || cleaned.isEmpty())
        return fileError(problem, cleaned);
    return whyUnusable(parent);
}

void replaceFile(const QString& path, const QByteArray& bytes, Audience audience)
{
    const auto canonical = QFileInfo(path).canonicalFilePath();
    const auto target = canonical.isEmpty() ? path : canonical;
    const auto previous = status(target);
    if (previous && S_ISDIR(previous->st_mode))
        throw fileError(EISDIR, target);
    // The rename would put a file in the place of a device or a pipe that other programs use.
    if (previous && !S_ISREG(previous->st_mode))
        throw fileError(ENXIO, target);
    FinishedFile file(target, bytes, audience == Audience::onlyOwner ? 0600 : 0666);
    if (previous && audience == Audience::everyone)
        file.setMode(previous->st_mode & 0777);
    if (const int failure = file.moveOver(target))
        throw fileError(failure, target);
}

bool writeNewFile(const QString& path, const QByteArray& bytes)
{
    FinishedFile file(path, bytes, 0666);
    const int failure = file.moveTo(path);
    if (failure != 0 && failure != EEXIST)
        throw fileError(failure, path);
    return failure == 0;
}

void reportTooLargeFiles()
{
    // A handler instead of ignoring it, which programs started from here would inherit.
    struct sigaction action { };
    action.sa_handler = [](int) {};
    action.sa_flags = SA_RESTART;
    ::sigaction(SIGXFSZ, &action, nullptr);
}

int moveToFreeName(FreeNameMove how, const QString& from, const QString& to)
{
    const auto source = QFile::encodeName(from);
    const auto target = QFile::encodeName(to);
    switch (how) {
    case FreeNameMove::rename:
        return ::renameat2(AT_FDCWD, source, AT_FDCWD, target, RENAME_NOREPLACE) == 0 ? 0 : errno;
    case FreeNameMove::link:
        if (::link(source, target) != 0)
            return errno;
        ::unlink(source);
        return 0;
    case FreeNameMove::reserve:
        return reserveThenReplace(source, target);
    }
    return EINVAL;
}

int moveToFreeName(const QString& from, const QString& to)
{
    int failure = 0;
    for (const auto how : {FreeNameMove::rename, FreeNameMove::link, FreeNameMove::reserve}) {
        failure = moveToFreeName(how, from, to);
        const bool isUnsupported = failure == EINVAL || failure == ENOSYS || failure == EOPNOTSUPP
            || failure == EPERM || failure == EMLINK;
        if (!isUnsupported)
            break;
    }
    return failure;
}

} // namespace pintalux
