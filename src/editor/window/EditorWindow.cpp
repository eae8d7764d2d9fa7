// SPDX-License-Identifier: MIT
#include "editor/window/EditorWindow.h"

#include "controls/theme/Fade.h"
#include "controls/theme/Theme.h"
#include "editor/bars/ToolPalette.h"
#include "editor/canvas/CanvasView.h"
#include "editor/style/ArrowOptionsPanel.h"
#include "editor/window/EditorWindowLayout.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPainter>
#include <QShortcut>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

int between(int from, int to, double progress) { return int(std::lround(from + (to - from) * progress)); }

QPoint between(QPointF from, QPointF to, double progress)
{
    return (from + (to - from) * progress).toPoint();
}

QMargins between(const QMargins& from, const QMargins& to, double progress)
{
    return {between(from.left(), to.left(), progress), between(from.top(), to.top(), progress),
        between(from.right(), to.right(), progress), between(from.bottom(), to.bottom(), progress)};
}

} // namespace

EditorWindow::EditorWindow(EditorModel& edited, RunCommand run, const EditorChrome::DragOut& dragOut)
    : model(edited)
    , canvasView(new CanvasView(edited, this))
    , shownEdge(edited.paletteEdge())
    , shownHidden(edited.toolbarHidden())
{
    chrome = new EditorChrome(model, canvasView->hover(), std::move(run), dragOut, this);
    toolPalette = new ToolPalette(
        model, [this] { dockPaletteAtMouse(); }, this);
    arrowOptions = new ArrowOptionsPanel(model, this);
    chrome->raise(); // the panels' shadows end at it

    setWindowTitle(u"Pintalux"_s);
    setMinimumSize(EditorWindowLayout::minimumSize);
    // Every pixel is a child's; painting beneath them would be for nothing.
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFocusProxy(canvasView);

    docking.setStartValue(0.0);
    docking.setEndValue(1.0);
    docking.setEasingCurve(QEasingCurve::InOutCubic);
    connect(&docking, &QVariantAnimation::valueChanged, this,
        [this](const QVariant& progress) { placePanels(progress.toDouble()); });
    connect(&model, &EditorModel::changed, this, &EditorWindow::modelChanged);
    showPanels();
}

EditorWindow::~EditorWindow() = default;

void EditorWindow::setMenuBar(std::unique_ptr<QMenuBar> bar)
{
    delete menus;
    menus = bar.release();
    menus->setParent(this);
    menus->show();
    auto* key = new QShortcut(Qt::Key_F10, menus);
    connect(key, &QShortcut::activated, menus,
        [bar = menus] { bar->setActiveAction(bar->actions().constFirst()); });
    layOut();
}

int EditorWindow::menuBarHeight() const { return menus ? menus->sizeHint().height() : 0; }

QRect EditorWindow::contentRect() const { return rect().adjusted(0, menuBarHeight(), 0, 0); }

void EditorWindow::modelChanged(EditorModel::Field field)
{
    switch (field) {
    case EditorModel::Field::paletteEdge:
    case EditorModel::Field::toolbarHidden:
        if (model.paletteEdge() == shownEdge && model.toolbarHidden() == shownHidden)
            return;
        shownEdge = model.paletteEdge();
        shownHidden = model.toolbarHidden();
        // Once all who watch the model know: the palette turns before it is measured.
        dockingIsDue = true;
        QMetaObject::invokeMethod(
            this, [this] { applyPaletteLayout(true); }, Qt::QueuedConnection);
        break;
    case EditorModel::Field::tool:
    case EditorModel::Field::showArrowOptions:
        showPanels();
        break;
    default:
        break;
    }
}

void EditorWindow::showPanels()
{
    toolPalette->setShown(!model.toolbarHidden());
    arrowOptions->setShown(model.tool() == Tool::arrow && model.showArrowOptions());
}

void EditorWindow::applyPaletteLayout(bool animated)
{
    docking.stop();
    dockingIsDue = false;
    showPanels();
    if (animated && isVisible() && !prefersReducedMotion()) {
        dockingStart = {toolPalette->pos(), arrowOptions->pos(), canvasView->insets()};
        docking.setDuration(Theme::dockMilliseconds);
        docking.start();
    } else {
        placePanels(1);
    }
    canvasView->setFocus();
}

void EditorWindow::placePanels(double progress)
{
    const auto paletteSize = toolPalette->sizeHint();
    const auto target = EditorWindowLayout::panels(model.paletteEdge(), canvasView->geometry(),
        model.toolbarHidden() ? QSize(0, 0) : paletteSize, arrowOptions->sizeHint());
    // One that fades away does so where it is.
    const auto palettePlace
        = EditorWindowLayout::panels(model.paletteEdge(), canvasView->geometry(), paletteSize, {}).palette;
    const auto insets
        = EditorWindowLayout::canvasInsets(model.paletteEdge(), model.toolbarHidden(), paletteSize);
    toolPalette->setGeometry({between(dockingStart.palette, palettePlace.topLeft(), progress), paletteSize});
    arrowOptions->setGeometry({between(dockingStart.arrowOptions, target.arrowOptions.topLeft(), progress),
        target.arrowOptions.size()});
    if (const auto now = between(dockingStart.insets, insets, progress); now != canvasView->insets())
        canvasView->setInsets(now);
}

void EditorWindow::layOut()
{
    if (menus)
        menus->setGeometry(0, 0, width(), menuBarHeight());
    const auto content = contentRect();
    chrome->setGeometry(content.x(), content.y(), content.width(), EditorChrome::barHeight);
    canvasView->setGeometry(content.adjusted(0, EditorChrome::barHeight, 0, 0));
    docking.stop();
    placePanels(1);
}

void EditorWindow::dockPaletteAtMouse()
{
    dockPalette(mapFromGlobal(QPointF(QCursor::pos())) - contentRect().topLeft());
}

void EditorWindow::dockPalette(QPointF contentPoint)
{
    const auto edge = EditorWindowLayout::nearestEdge(contentPoint, contentRect().size());
    if (edge != model.paletteEdge())
        model.setPaletteEdge(edge);
    else
        applyPaletteLayout(true);
}

void EditorWindow::resizeEvent(QResizeEvent*) { layOut(); }

bool EditorWindow::event(QEvent* event)
{
    // A child wants another size: the palette in a narrow window, the menu bar in another font.
    // Events come from the first child on, when there are no members yet.
    if (event->type() == QEvent::LayoutRequest && !dockingIsDue
        && docking.state() != QVariantAnimation::Running)
        layOut();
    return QWidget::event(event);
}

void EditorWindow::paintEvent(QPaintEvent* event)
{
    const auto& theme = Theme::of(palette());
    QPainter painter(this);
    painter.fillRect(event->rect(), theme.canvas);
    const auto content = contentRect();
    painter.fillRect(QRect(0, 0, width(), content.y() + EditorChrome::barHeight), theme.bar);
}

void EditorWindow::mousePressEvent(QMouseEvent* event)
{
    const bool isOnBar = event->position().y() < contentRect().y() + EditorChrome::barHeight;
    if (event->button() == Qt::LeftButton && isOnBar)
        barPress = event->position().toPoint();
}

void EditorWindow::mouseMoveEvent(QMouseEvent* event)
{
    if (!barPress || !(event->buttons() & Qt::LeftButton)
        || (event->position().toPoint() - *barPress).manhattanLength() < QApplication::startDragDistance())
        return;
    // The bar's empty places move the window, as its title does.
    barPress.reset();
    windowHandle()->startSystemMove();
}

void EditorWindow::closeEvent(QCloseEvent* event)
{
    if (const auto handler = std::exchange(willClose, nullptr))
        handler();
    event->accept();
}

} // namespace pintalux
