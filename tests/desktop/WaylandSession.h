// SPDX-License-Identifier: MIT
#pragma once

#include "DisplaySession.h"

#include <QImage>
#include <QPoint>
#include <QRect>

namespace pintalux::test {

/// A real Wayland compositor with two outputs beside each other, without a device or a graphics card, with a
/// session bus and a person's pointer and keyboard of its own. HEADLESS-1 has 1280 × 800 pixels at scale 1;
/// HEADLESS-2 has 1500 × 900 at 1.5, or what it is asked for.
///
/// The compositor refuses to run as root and then runs as nobody.
class WaylandSession : public ProgramSession {
public:
    explicit WaylandSession(const QString& secondOutput = QStringLiteral("mode 1500x900 scale 1.5"));
    ~WaylandSession() override;

    /// The pixels of an output as an independent program sees them.
    QImage pictureByOthers(const QString& output) const;
    /// The picture of an output once it does not change any more.
    QImage restingPicture(const QString& output) const;

    /// A command for the compositor, as in its configuration.
    void tell(const QString& command) const;
    /// One for `pintalux_hands`.
    void hands(const QString& command);
    void drag(QPoint from, QPoint to);
    void key(const QString& name) { hands(QStringLiteral("key ") + name); }

private:
    void startCompositor(const QString& secondOutput);

    QTemporaryDir folder;
    QProcess* pointerAndKeys = nullptr;
};

} // namespace pintalux::test
