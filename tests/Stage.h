// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <fcntl.h>
#include <linux/capability.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
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

inline void put(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    require(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size(), "writing a file");
}

/// Gives this process a world of its own in which it may mount disks, whoever runs it: an ordinary user is
/// root there, and nowhere else. What is mounted ends with the process. Before any thread is started.
inline void enterOwnWorld()
{
    const auto user = QByteArray::number(geteuid());
    const auto group = QByteArray::number(getegid());
    if (unshare(geteuid() == 0 ? CLONE_NEWNS : CLONE_NEWNS | CLONE_NEWUSER) != 0)
        return;
    if (user != "0") {
        put(QStringLiteral("/proc/self/setgroups"), "deny");
        put(QStringLiteral("/proc/self/uid_map"), "0 " + user + " 1");
        put(QStringLiteral("/proc/self/gid_map"), "0 " + group + " 1");
    }
    // In a changed root that is not mounted itself there is nothing to take private.
    require(mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 || errno == EINVAL,
        "keeping what is mounted to ourselves");
}

/// A disk of a few kilobytes. Its test begins with `NEEDS_DISKS`.
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

#define NEEDS_DISKS()                                                                                        \
    if (const auto reason = stage::whyNoDisks(); !reason.empty())                                            \
    GTEST_SKIP() << reason

/// Empty where disks can be mounted.
inline std::string whyNoDisks()
{
    try {
        const SmallDisk disk;
    } catch (const std::exception& error) {
        return std::string(error.what())
            + "; it takes root, or a system that lets users have namespaces of their own";
    }
    return {};
}

/// For its lifetime this thread has the rights of somebody without any: root is bound by permissions then.
class WithoutPrivileges {
public:
    WithoutPrivileges()
    {
        require(syscall(SYS_capget, &header, kept.data()) == 0, "asking for privileges");
        auto none = kept;
        for (auto& half : none)
            half.effective = 0;
        require(syscall(SYS_capset, &header, none.data()) == 0, "dropping privileges");
    }
    WithoutPrivileges(const WithoutPrivileges&) = delete;
    WithoutPrivileges& operator=(const WithoutPrivileges&) = delete;
    ~WithoutPrivileges() { syscall(SYS_capset, &header, kept.data()); }

private:
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3> kept{};
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

} // namespace stage
