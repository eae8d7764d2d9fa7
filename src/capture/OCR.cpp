#include "capture/OCR.h"

namespace pintalux {

void OCR::recognize(const QImage&, std::function<void(const std::optional<QString>&)> completion)
{
    completion({});
}

std::optional<QString> OCR::recognizeSync(const QImage&) { return {}; }

} // namespace pintalux
