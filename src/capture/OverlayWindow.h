#pragma once

#include "capture/OverlayView.h"

namespace pintalux {

/// The panel that covers one screen and holds its view.
class OverlayWindow : public QWidget {
public:
    OverlayWindow(const FrozenDisplay& display, QScreen& screen, CaptureOverlayController& controller);

    OverlayView& view() { return *overlayView; }
    /// The screen's name.
    const QString& displayName() const { return name; }

protected:
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QString name;
    OverlayView* overlayView; ///< a child of this window
};

} // namespace pintalux
