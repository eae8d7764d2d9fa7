// SPDX-License-Identifier: MIT
#pragma once

#include "settings/Settings.h"

#include <QColor>
#include <QObject>
#include <QPointer>
#include <QUuid>

#include <memory>
#include <optional>

class QColorDialog;

namespace pintalux {

class EditorModel;

/// The toolkit's colour dialog as a panel that stays open: what is chosen in it takes effect at once in the
/// editor that opened it last. It goes when that editor does.
class ColorPanelBridge : public QObject {
    Q_OBJECT

public:
    static ColorPanelBridge& shared();
    ~ColorPanelBridge() override;

    /// Shows the panel with the model's colour and brings it to the front.
    void open(EditorModel& model);

    /// The panel; null until it has been opened.
    QColorDialog* panel() const { return dialog.get(); }

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    ColorPanelBridge();
    void makePanel();
    void colorChanged(const QColor& color);

    QPointer<EditorModel> model;
    std::unique_ptr<QColorDialog> dialog;
    bool dragging = false; ///< a mouse button is down in the panel
    /// While it goes on, the settings are not written for each colour on the way.
    std::optional<Settings::Hold> hold;
    /// The mark whose colour the drag that goes on changes, in one undo step.
    std::optional<QUuid> restyled;
};

} // namespace pintalux
