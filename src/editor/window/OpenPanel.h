// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <functional>

class QFileDialog;
class QWidget;

namespace pintalux {

/// How a dialog for choosing pictures presents itself.
struct OpenPanel {
    QString message;
    QString prompt{};     ///< on the button that accepts; empty for the desktop's own word
    bool isListed = true; ///< in task bars, where it belongs to no window
};

/// Asks with the desktop's own dialog for picture files, over `window` if there is one. `completion` is
/// called with the paths in the order chosen, never for a dialog that was cancelled. The dialog deletes
/// itself.
QFileDialog* showOpenPanel(
    const OpenPanel& panel, QWidget* window, std::function<void(const QStringList&)> completion);

} // namespace pintalux
