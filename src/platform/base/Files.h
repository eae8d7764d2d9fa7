// SPDX-License-Identifier: MIT
#pragma once

#include "platform/base/Error.h"

#include <QByteArray>
#include <QString>

#include <optional>

class QFile;

namespace pintalux {

/// Who may read what is created: whoever the person's umask lets, or the person alone (0600, folders 0700).
enum class Audience { everyone, onlyOwner };

/// The sentence for a failed file operation: `systemError` is an errno, `path` what it happened to.
/// The code is the toolkit's file error (`QFileDevice::FileError`).
Error fileError(int systemError, const QString& path);

/// Opens a file for reading. 0, or the errno: EISDIR for a folder, ENXIO for what is no file at all. Neither
/// this nor reading ever waits for a pipe or a device.
int openFile(const QString& path, QFile& file);

/// Reads a whole file of at most `mostBytes` into `bytes`. 0, or the errno: EFBIG when the file is larger,
/// otherwise those of `openFile`.
int readFile(const QString& path, qint64 mostBytes, QByteArray& bytes);

/// Creates the folder and those above it that are missing; what exists keeps its mode. Throws `Error`.
void makeFolders(const QString& path, Audience audience = Audience::everyone);

/// Why nobody could save into the folder, which may still have to be made; none when it can be used.
std::optional<Error> whyUnusable(const QString& folder);

/// Writes the bytes under the name, replacing what was there, in one step: whoever reads sees the old bytes
/// or all of the new ones, also after a crash. A symbolic link is followed; for everyone, a replaced file's
/// mode is kept. Only files are replaced, never a device or a pipe. A failure throws `Error`, changes nothing
/// and leaves nothing behind.
void replaceFile(const QString& path, const QByteArray& bytes, Audience audience = Audience::everyone);

/// Writes the bytes under a name that nobody has yet. False when the name is taken, also when another process
/// takes it at the same moment. The name never shows half-written bytes; failures are those of `replaceFile`.
bool writeNewFile(const QString& path, const QByteArray& bytes);

/// A file that passes what the shell's `ulimit` or the file system allows is a failure as any other from now
/// on, instead of the end of the process.
void reportTooLargeFiles();

/// The ways to give a finished file a name that must be free. File systems differ in what they support, so
/// `writeNewFile` tries them in this order.
enum class FreeNameMove {
    rename,  ///< one system call that refuses to replace
    link,    ///< a second hard link, then the first is dropped
    reserve, ///< an empty file takes the name, then is replaced: the name is empty for a moment
};

/// Moves `from` to the free name `to` within one folder. 0, or the errno; EEXIST when the name is taken.
int moveToFreeName(FreeNameMove how, const QString& from, const QString& to);

/// The same in the first way that the file system supports.
int moveToFreeName(const QString& from, const QString& to);

} // namespace pintalux
