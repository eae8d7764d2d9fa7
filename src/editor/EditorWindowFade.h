#pragma once

class QWidget;

namespace pintalux::EditorWindowFade {

/// Shows or hides a panel of a window, fading. A panel that is going already takes no mouse.
void setShown(QWidget& panel, bool shown, bool animated);

} // namespace pintalux::EditorWindowFade
