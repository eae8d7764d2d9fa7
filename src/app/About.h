// SPDX-License-Identifier: MIT
#pragma once

#include <QUrl>
#include <QWidget>

#include <functional>

namespace pintalux {

/// The small window that says what this program is: icon, name, version, credit and address.
class About : public QWidget {
    Q_OBJECT

public:
    /// `openUrl` is called for the address when it is clicked.
    explicit About(std::function<void(const QUrl&)> openUrl, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void applyTheme();
};

} // namespace pintalux
