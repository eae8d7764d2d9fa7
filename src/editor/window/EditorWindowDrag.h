// SPDX-License-Identifier: MIT
#pragma once

#include <QMimeData>
#include <QPixmap>
#include <QString>
#include <QUrl>

#include <optional>

namespace pintalux {

/// A picture that is dragged out of the program, as a PNG file and as image data. Both are made when a
/// program asks for them: the file in the person's private temporary folder, under the name of a saved
/// picture.
class DraggedPicture : public QMimeData {
    Q_OBJECT

public:
    DraggedPicture(const QImage& image, double pixelScale, const std::optional<QString>& name);

    QStringList formats() const override;

    /// What hangs from the pointer: the picture, made small.
    QPixmap thumbnail(double devicePixelRatio) const;

protected:
    QVariant retrieveData(const QString& type, QMetaType preferred) const override;

private:
    const QByteArray& png() const;
    QUrl fileAddress() const; ///< empty when there is no file

    QImage image;
    double pixelScale;
    std::optional<QString> name;
    mutable QByteArray encoded;
    mutable std::optional<QString> path;
};

} // namespace pintalux
