// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

namespace pintalux {

/// Where the command line's results go: a file, or standard output, which is called "-".
///
/// A file's name decides what is written: a JPEG for ".jpg" and ".jpeg", else a PNG. Names that promise
/// another kind of picture are refused. Failures throw `Error`; they leave no file, and one that was there as
/// it was.
namespace PictureOutput {

/// Fails for a name that promises what cannot be written, before anything is drawn or asked.
void requireName(const QString& path);

void write(const QImage& image, double pixelScale, const QString& path);
/// The same for a picture that is a PNG already, with its physical size.
void write(const QByteArray& png, const QString& path);

/// Text in UTF-8, ended by a line feed.
void writeText(QByteArray text, const QString& path);

} // namespace PictureOutput

} // namespace pintalux
