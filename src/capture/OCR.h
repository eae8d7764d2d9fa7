#pragma once

#include <QImage>
#include <QString>

#include <functional>
#include <optional>

namespace pintalux {

/// Reads the text in a picture, in reading order: one line of the result per visual line.
namespace OCR {

/// Recognises on a worker thread; `completion` runs later on the main thread with the text, empty when the
/// picture has none, or with nothing when recognising failed.
void recognize(const QImage& image, std::function<void(const std::optional<QString>&)> completion);

/// The same, blocking the calling thread; never call it on the main thread with a window up.
std::optional<QString> recognizeSync(const QImage& image);

} // namespace OCR

} // namespace pintalux
