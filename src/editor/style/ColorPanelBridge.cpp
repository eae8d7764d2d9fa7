// SPDX-License-Identifier: MIT
#include "editor/style/ColorPanelBridge.h"

#include "app/icon/AppIcon.h"
#include "editor/state/EditorModel.h"
#include "platform/desktop/WindowSystem.h"

#include <QColorDialog>
#include <QCoreApplication>
#include <QEvent>

using namespace Qt::StringLiterals;

namespace pintalux {

ColorPanelBridge& ColorPanelBridge::shared()
{
    static ColorPanelBridge bridge;
    return bridge;
}

ColorPanelBridge::ColorPanelBridge()
{
    // The panel is a widget, which must go before the application does, also when that ends without a loop.
    qAddPostRoutine([] { shared().dialog.reset(); });
}

ColorPanelBridge::~ColorPanelBridge() = default;

void ColorPanelBridge::open(EditorModel& opened)
{
    hold.reset();
    if (model != &opened) {
        if (model)
            model->disconnect(this);
        model = &opened;
        connect(&opened, &QObject::destroyed, this, [this] {
            hold.reset();
            if (dialog)
                dialog->hide();
        });
    }
    if (!dialog)
        makePanel();
    {
        const QSignalBlocker quiet(*dialog);
        dialog->setCurrentColor(opened.color());
    }
    restyled.reset();
    if (!dialog->isVisible())
        WindowSystem::current().setInTaskBar(*dialog, false);
    dialog->show();
    dialog->raise();
    dialog->activateWindow();
}

void ColorPanelBridge::makePanel()
{
    dialog = std::make_unique<QColorDialog>();
    dialog->setWindowTitle(u"Color"_s);
    dialog->setWindowIcon(AppIcon::windowIcon());
    // A desktop's own dialog tells its colour only when it closes.
    dialog->setOptions(QColorDialog::NoButtons | QColorDialog::DontUseNativeDialog);
    dialog->setWindowFlag(Qt::Tool);
    dialog->setModal(false);
    connect(dialog.get(), &QColorDialog::currentColorChanged, this, &ColorPanelBridge::colorChanged);
    for (auto* part : dialog->findChildren<QWidget*>())
        part->installEventFilter(this);
}

bool ColorPanelBridge::eventFilter(QObject*, QEvent* event)
{
    const auto type = event->type();
    if (type == QEvent::MouseButtonPress || type == QEvent::MouseButtonRelease || type == QEvent::Hide) {
        dragging = type == QEvent::MouseButtonPress;
        restyled.reset();
        hold.reset();
    }
    return false;
}

void ColorPanelBridge::colorChanged(const QColor& chosen)
{
    if (!model)
        return;
    if (dragging && !hold)
        hold.emplace(model->preferences());
    const auto standard = chosen.toRgb();
    const auto color = standard.isValid() ? standard : chosen;
    model->setColor(color);
    const auto* mark = model->selected();
    if (!mark || mark->color == color)
        return;
    const auto recolor = [&](Annotation& annotation) { annotation.color = color; };
    if (restyled == mark->id)
        return model->updateWithoutUndo(mark->id, recolor);
    if (dragging)
        restyled = mark->id;
    model->restyleSelected(recolor);
}

} // namespace pintalux
