// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QList>
#include <QRectF>
#include <QString>

#include <atomic>
#include <memory>

namespace pintalux {

/// A word seen in a picture.
struct TextObservation {
    QString text; ///< empty when nothing could be made of what was seen
    /// Where it is, in parts of the picture's sides (0…1), origin top-left, y downward. Its height is that of
    /// the whole text line, so that a comma and a capital on one line are equally high.
    QRectF box;

    bool operator==(const TextObservation&) const = default;
};

/// Finds the words in a picture.
///
/// One thread at a time; it blocks for as long as it takes and never belongs on the main thread.
class TextRecognizer {
public:
    virtual ~TextRecognizer() = default;

    /// The words, in no useful order. Ends early with whatever was found once `cancelled` is set. Throws
    /// `Error` when nothing on this machine can read text, which says what to install.
    virtual QList<TextObservation> recognize(const QImage& image, const std::atomic<bool>& cancelled) = 0;
};

/// The machine's recogniser. Costs nothing yet: its library and languages are loaded for the first picture,
/// and kept.
std::unique_ptr<TextRecognizer> makeTextRecognizer();

} // namespace pintalux
