// SPDX-License-Identifier: MIT
#include "app/floating/Pin.h"

#include "app/floating/PinGeometry.h"
#include "app/messages/HUD.h"
#include "controls/Menu.h"
#include "platform/desktop/WindowSystem.h"
#include "platform/graphics/Draw.h"
#include "render/export/Clipboard.h"

#include <QApplication>
#include <QDialog>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QScreen>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

constexpr int shadowSpace = int(Theme::shadowMargin); // points
constexpr int settlingMilliseconds = 200;
constexpr double faintest = 0.25;
constexpr double opacityPerStep = 0.01;
constexpr double stepsPerNotch = 10; // of a wheel that does not count in pixels

QList<PinnedImage*> openPins;

// The windows must be gone before the connection to the display is.
void closeAtTheEnd()
{
    static bool promised = false;
    if (std::exchange(promised, true))
        return;
    qAddPostRoutine([] {
        qDeleteAll(std::exchange(openPins, {}));
        promised = false;
    });
}

/// Puts dialogs above the pins: below one they could neither be seen nor be answered, and what they belong to
/// would seem frozen.
class DialogsAbovePins : public QObject {
public:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        // Sent before the window manager learns of the window.
        const auto* dialog = event->type() == QEvent::Show && !openPins.isEmpty()
            ? qobject_cast<QDialog*>(watched)
            : nullptr;
        if (dialog && dialog->windowHandle())
            dialog->windowHandle()->setFlag(Qt::WindowStaysOnTopHint);
        return false;
    }
};

void keepDialogsAbove()
{
    static QPointer<DialogsAbovePins> watching;
    if (watching)
        return;
    watching = new DialogsAbovePins;
    watching->setParent(qApp);
    qApp->installEventFilter(watching);
}

} // namespace

void PinnedImage::show(const QImage& image, double pixelScale, const QWidget* near)
{
    const auto* screen = near && near->isVisible() ? near->screen() : QGuiApplication::primaryScreen();
    if (image.isNull() || !screen)
        return;
    closeAtTheEnd();
    keepDialogsAbove();
    const auto visible = WindowSystem::current().visibleFrame(*screen);
    auto* pin = new PinnedImage(image, PinGeometry::sizeOnScreen(image.size(), pixelScale, visible.size()));
    QRect frame({}, pin->proportions);
    frame.moveCenter(visible.center());
    pin->setPicture(frame);
    openPins.append(pin);
    pin->QWidget::show();
    pin->raise();
    pin->activateWindow();
    HUD::show(u"Fijada en pantalla · doble clic para cerrar"_s, u"pin.fill"_s);
}

const QList<PinnedImage*>& PinnedImage::open() { return openPins; }

PinnedImage::PinnedImage(const QImage& picture, QSize size)
    : image(picture)
    , proportions(size)
    , sheet(*this, WindowRole::pin, {.radius = Theme::pinRadius, .margin = shadowSpace, .cutSquare = true})
{
    setWindowTitle(u"Imagen fijada"_s);
    setAccessibleName(windowTitle());
    setMouseTracking(true);
    settled.setSingleShot(true);
    settled.setInterval(settlingMilliseconds);
    connect(&settled, &QTimer::timeout, this, &PinnedImage::keepProportions);
}

PinnedImage::~PinnedImage() { openPins.removeOne(this); }

void PinnedImage::dismiss()
{
    hide();
    openPins.removeOne(this);
    deleteLater(); // it may be its own event that asks
}

void PinnedImage::copyImage() const
{
    const double scale = image.width() / std::max(1.0, double(pictureInSheet().width()));
    Clipboard::copy(image, std::max(1.0, scale));
    HUD::show(u"Copiado al portapapeles"_s, u"doc.on.clipboard"_s);
}

void PinnedImage::setPicture(const QRect& screenRect)
{
    setGeometry(screenRect.adjusted(-shadowSpace, -shadowSpace, shadowSpace, shadowSpace));
}

// The window manager resizes it as well, and is not asked to keep the proportions: some managers would keep
// those of the picture with its shadow.
void PinnedImage::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    settled.start();
}

void PinnedImage::keepProportions()
{
    if (const auto kept = pictureInSheet(); kept.size() != sheet.rect().size())
        setPicture(kept.translated(pos()));
}

QRect PinnedImage::pictureInSheet() const
{
    QRect kept({}, PinGeometry::fitted(sheet.rect().size(), proportions));
    kept.moveCenter(sheet.rect().center());
    return kept;
}

// A fraction of a point was rounded up, which is less than a point in device pixels.
bool PinnedImage::isPixelForPixel() const
{
    const double ratio = devicePixelRatioF();
    const auto spare = QSizeF(pictureInSheet().size()) * ratio - QSizeF(image.size());
    return spare.width() > -1 && spare.height() > -1 && spare.width() < ratio && spare.height() < ratio;
}

void PinnedImage::drawPicture(QPainter& painter)
{
    const QRectF card(pictureInSheet());
    const double ratio = devicePixelRatioF();
    if (isPixelForPixel()) {
        scaled = QImage();
        painter.drawImage(card, image); // behind the picture's last pixels
        painter.drawImage(QRectF(card.topLeft(), QSizeF(image.size()) / ratio), image);
        return;
    }
    const auto wanted = (card.size() * ratio).toSize();
    if (scaled.size() != wanted)
        scaled = image.scaled(wanted, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    painter.drawImage(card, scaled);
}

void PinnedImage::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const auto& theme = Theme::of(palette());
    const QRectF card(sheet.rect());
    if (!sheet.isTranslucent()) {
        painter.fillRect(card, theme.card); // below what is transparent
        drawPicture(painter);
        Elevation::drawInnerEdge(card, sheet.radius(), theme, painter);
        return;
    }
    Elevation::drawShadow(Elevation::Level::floating, card, sheet.radius(), theme, painter);
    painter.setClipPath(Draw::roundedRect(card, sheet.radius()));
    if (pictureInSheet().size() != sheet.rect().size())
        painter.fillRect(card, theme.card); // resized by somebody else a moment ago
    drawPicture(painter);
    painter.setClipping(false);
    Elevation::drawEdge(card, sheet.radius(), theme, painter);
}

void PinnedImage::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    const auto point = event->position().toPoint() - sheet.rect().topLeft();
    grip = Grip{
        event->globalPosition().toPoint(), picture(), PinGeometry::edgesAt(point, sheet.rect().size())};
}

void PinnedImage::mouseMoveEvent(QMouseEvent* event)
{
    if (!grip) {
        const auto point = event->position().toPoint() - sheet.rect().topLeft();
        setCursor(PinGeometry::cursorFor(PinGeometry::edgesAt(point, sheet.rect().size())));
        return;
    }
    const auto delta = event->globalPosition().toPoint() - grip->screenPoint;
    if (grip->edges) {
        setPicture(PinGeometry::resized(grip->picture, grip->edges, delta, proportions));
        return;
    }
    // Not before it is a drag, for a double click may shake. The window manager is not asked to do it: it
    // would take the release, and some of them only move it in the end.
    grip->moving = grip->moving || delta.manhattanLength() >= QApplication::startDragDistance();
    if (grip->moving)
        setPicture(grip->picture.translated(delta));
}

void PinnedImage::mouseReleaseEvent(QMouseEvent*) { grip.reset(); }

void PinnedImage::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        dismiss();
}

void PinnedImage::wheelEvent(QWheelEvent* event)
{
    const double pixels = event->pixelDelta().y();
    const double steps = pixels != 0
        ? pixels
        : event->angleDelta().y() * stepsPerNotch / int(QWheelEvent::DefaultDeltasPerStep);
    opacity = std::clamp(opacity + steps * opacityPerStep, faintest, 1.0);
    setWindowOpacity(opacity);
    event->accept();
}

void PinnedImage::contextMenuEvent(QContextMenuEvent* event)
{
    constexpr int menuWidth = 132;
    auto* menu = new Menu(this);
    menu->setCardWidth(menuWidth);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    connect(menu->addAction(u"Copiar"_s), &QAction::triggered, this, &PinnedImage::copyImage);
    connect(menu->addAction(u"Cerrar"_s), &QAction::triggered, this, &PinnedImage::dismiss);
    menu->popUpAt(event->globalPos());
}

void PinnedImage::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        dismiss();
    else
        QWidget::keyPressEvent(event);
}

} // namespace pintalux
