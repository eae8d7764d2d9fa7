#include "platform/AtomicFile.h"

#include "platform/Error.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

#include <cerrno>

namespace pintalux {

namespace {

/// The system's number and the toolkit's, taken together before anything else can change them.
struct Failure {
    explicit Failure(const QSaveFile& file)
        : system(errno)
        , toolkit(file.error())
    {
    }

    int system;
    QFileDevice::FileError toolkit;
};

QString sentence(const QString& path, const Failure& failure)
{
    const QFileInfo file(path);
    const QString folder = QDir::toNativeSeparators(file.absolutePath());
    if (file.isDir())
        return u"«%1» es una carpeta."_qs.arg(file.fileName().isEmpty() ? folder : file.fileName());
    if (failure.system == ENOSPC || failure.system == EDQUOT)
        return u"No hay espacio en el disco."_qs;
    if (failure.system == EFBIG)
        return u"El archivo «%1» es demasiado grande para el disco."_qs.arg(file.fileName());
    if (const QFileInfo parent(folder); !parent.exists())
        return u"No existe la carpeta «%1»."_qs.arg(folder);
    else if (!parent.isDir())
        return u"«%1» no es una carpeta."_qs.arg(folder);
    if (failure.system == EACCES || failure.system == EPERM || failure.system == EROFS)
        return u"No tienes permiso para escribir en «%1»."_qs.arg(folder);
    return u"No se pudo escribir el archivo «%1»."_qs.arg(file.fileName());
}

} // namespace

void writeAtomically(
    const QString& path, const QByteArray& bytes, std::optional<QFileDevice::Permissions> permissions)
{
    QSaveFile file(path);
    const auto require = [&](bool succeeded) {
        if (succeeded)
            return;
        const Failure failure(file);
        file.cancelWriting();
        const int code = failure.toolkit == QFileDevice::NoError ? QFileDevice::WriteError : failure.toolkit;
        throw Error(Error::fileDomain, code, sentence(path, failure));
    };
    errno = 0;
    require(file.open(QIODevice::WriteOnly));
    // Before a byte is in it: the temporary file is created readable by others.
    require(!permissions || file.setPermissions(*permissions));
    require(file.write(bytes) == bytes.size());
    require(file.flush());
    require(file.commit());
}

} // namespace pintalux
