// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>

// Stages for what goes wrong with files. One that cannot be set up throws, so that its test fails.

namespace stage {

inline void require(bool done, const char* what)
{
    if (!done)
        throw std::runtime_error(std::string("cannot set the stage: ") + what + ": " + std::strerror(errno));
}

/// A disk of a few kilobytes. Mounting takes the rights of root.
class SmallDisk {
public:
    explicit SmallDisk(int kilobytes = 64)
    {
        const auto options = QByteArray("size=") + QByteArray::number(kilobytes) + "k";
        require(mount("tmpfs", encoded(), "tmpfs", 0, options.constData()) == 0, "mounting a small disk");
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;
    ~SmallDisk() { umount2(encoded(), MNT_DETACH); }

    QString path() const { return folder.path(); }

    /// Leaves no byte free.
    void fill() const
    {
        QFile file(path() + QStringLiteral("/lleno"));
        require(file.open(QIODevice::WriteOnly | QIODevice::Unbuffered), "opening the filling");
        while (file.write(QByteArray(4096, 'x')) > 0) { }
    }

    void makeRoom() const
    {
        require(QFile::remove(path() + QStringLiteral("/lleno")), "removing the filling");
    }

    void makeReadOnly() const
    {
        require(mount(nullptr, encoded(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) == 0, "remounting");
    }

private:
    QByteArray encoded() const { return QFile::encodeName(folder.path()); }
    QTemporaryDir folder;
};

/// For its lifetime the process has the rights of somebody without any: root is bound by permissions then.
/// Whoever is not root already is.
class WithoutPrivileges {
public:
    static constexpr uid_t nobody = 65534;

    WithoutPrivileges() { require(geteuid() != 0 || seteuid(nobody) == 0, "dropping privileges"); }
    WithoutPrivileges(const WithoutPrivileges&) = delete;
    WithoutPrivileges& operator=(const WithoutPrivileges&) = delete;
    ~WithoutPrivileges() { require(seteuid(getuid()) == 0, "taking privileges back"); }
};

/// A folder that `WithoutPrivileges` can enter but not write to.
inline void makeUnwritable(const QString& folder)
{
    require(chmod(QFile::encodeName(folder).constData(), 0555) == 0, "closing a folder");
}

inline mode_t modeOf(const QString& path)
{
    struct stat found { };
    require(lstat(QFile::encodeName(path).constData(), &found) == 0, "looking at a file");
    return found.st_mode & 07777;
}

inline QByteArray contents(const QString& path)
{
    QFile file(path);
    require(file.open(QIODevice::ReadOnly), "reading a file");
    return file.readAll();
}

inline void put(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    require(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size(), "writing a file");
}

} // namespace stage
