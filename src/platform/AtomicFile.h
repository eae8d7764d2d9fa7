#pragma once

#include <QByteArray>
#include <QFileDevice>
#include <QString>

#include <optional>

namespace pintalux {

/// Writes `bytes` to the file at `path` so that the file holds either all of them or what it held before.
///
/// The bytes go to a temporary file beside it, reach the disk, and take the name in one step. A link is
/// followed: the file that it names is replaced and the link stays. A file that was there keeps its
/// permissions, a new one gets the usual ones; with `permissions` the file has these in both cases, and
/// nobody else can read it at any time before.
///
/// Throws `Error` in `Error::fileDomain` with the toolkit's number (`QFileDevice::FileError`) and a Spanish
/// sentence. Then no temporary file is left and a file that was there is untouched.
void writeAtomically(const QString& path, const QByteArray& bytes,
    std::optional<QFileDevice::Permissions> permissions = std::nullopt);

} // namespace pintalux
