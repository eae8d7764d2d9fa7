// SPDX-License-Identifier: MIT
#include "settings/preferences/PreferencesWindow.h"

#include "app/icon/AppIcon.h"
#include "platform/desktop/ToolkitScreens.h"
#include "platform/desktop/WindowSystem.h"
#include "settings/preferences/PreferencesView.h"

#include <QBoxLayout>
#include <QKeyEvent>
#include <QScreen>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

/// Room that a screen keeps for its panels and the window's frame; points.
constexpr int roomForFrame = 60;
constexpr int leastHeight = 360;

} // namespace

PreferencesWindow::PreferencesWindow(Settings& settings, PreferencesHost host)
    : QWidget(nullptr,
        Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint
            | Qt::WindowCloseButtonHint)
    , form(new PreferencesView(settings, std::move(host), this))
{
    setWindowTitle(u"Ajustes de Pintalux"_s);
    setWindowIcon(AppIcon::windowIcon());
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(form);
    setFixedWidth(form->sizeHint().width());
    setMinimumHeight(leastHeight);
}

void PreferencesWindow::place()
{
    if (std::exchange(placed, true))
        return;
    const auto visible = WindowSystem::current().visibleFrame(*screenUnderPointer());
    const auto wished = form->sizeHint();
    resize(wished.width(), std::clamp(visible.height() - roomForFrame, leastHeight, wished.height()));
    move(visible.center() - rect().center());
}

void PreferencesWindow::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape || event->matches(QKeySequence::Close))
        close();
    else
        QWidget::keyPressEvent(event);
}

void PreferencesWindow::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    if (!event->spontaneous())
        Q_EMIT closed();
}

} // namespace pintalux
