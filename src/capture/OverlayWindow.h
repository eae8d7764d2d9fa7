#pragma once

#include "capture/OverlayView.h"
#include "platform/DirectSurface.h"

namespace pintalux {

/// The view of a screen as the panel that covers it.
class OverlayWindow : public OverlayView {
public:
    OverlayWindow(const FrozenDisplay& display, QScreen& screen, CaptureOverlayController& controller);

    OverlayView& view() { return *this; }
    /// The screen's name.
    const QString& displayName() const { return name; }

protected:
    QPaintEngine* paintEngine() const override;

private:
    QString name;
    std::unique_ptr<DirectSurface> surface; ///< null where the toolkit paints
};

} // namespace pintalux
