// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusMessage>
#include <QObject>

#include <optional>

namespace pintalux {

/// Whether the desktop asks its programs for dark windows, and each change of that wish.
///
/// The toolkit reads the colours of few desktops; the others say no more than this. The settings portal is
/// asked first. Desktops that tell it nothing choose a theme for the widgets of their programs whose name
/// says that it is dark.
class DesktopAppearance : public QObject {
    Q_OBJECT

public:
    explicit DesktopAppearance(QObject* parent = nullptr);

    /// None when the desktop has no wish, and as long as it has not answered.
    std::optional<bool> wishesDark() const;

Q_SIGNALS:
    /// Once the desktop has answered, without making anybody wait for it, and whenever it says so anew.
    void changed();

private Q_SLOTS:
    void settingChanged(const QDBusMessage& change);

private:
    void ask(const QString& space, const QString& key);
    void take(const QString& space, const QString& key, const QVariant& value);

    uint scheme = 0;     ///< as the portal counts them
    QString portalTheme; ///< the theme's name as the portal knows it
};

} // namespace pintalux
