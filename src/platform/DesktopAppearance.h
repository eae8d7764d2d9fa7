#pragma once

#include <QDBusMessage>
#include <QObject>

namespace pintalux {

/// Whether the desktop asks its programs for dark windows, as the settings portal tells it, and each change
/// of that wish.
///
/// The toolkit reads the colours of few desktops; the others say no more than this. Without a session bus or
/// a portal nothing is ever asked for.
class DesktopAppearance : public QObject {
    Q_OBJECT

public:
    explicit DesktopAppearance(QObject* parent = nullptr);

Q_SIGNALS:
    /// Said once the desktop has answered, without making anybody wait for it, and whenever it says so anew.
    void darkWished(bool dark);

private Q_SLOTS:
    void settingChanged(const QDBusMessage& change);
};

} // namespace pintalux
