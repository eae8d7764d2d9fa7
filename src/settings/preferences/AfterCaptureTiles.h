// SPDX-License-Identifier: MIT
#pragma once

#include "settings/Settings.h"

#include <QList>
#include <QWidget>

class QAbstractButton;

namespace pintalux {

/// What happens after a capture, as three pictures to choose from: one group of radio buttons.
class AfterCaptureTiles : public QWidget {
    Q_OBJECT

public:
    explicit AfterCaptureTiles(QWidget* parent = nullptr);

    /// Shows the choice; announces nothing.
    void setChoice(AfterCapture choice);

Q_SIGNALS:
    void chosen(pintalux::AfterCapture choice);

private:
    QList<QAbstractButton*> tiles; ///< in the order of the enumeration
};

} // namespace pintalux
