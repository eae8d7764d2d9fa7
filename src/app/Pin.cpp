#include "app/Pin.h"

namespace pintalux {

void PinnedImage::show(const QImage&, double, const QWidget*) { }

} // namespace pintalux
