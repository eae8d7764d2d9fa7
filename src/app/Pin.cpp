#include "app/Pin.h"

#include "app/HUD.h"
#include "app/MenuStyle.h"
#include "app/PinGeometry.h"
#include "app/Theme.h"
#include "controls/Elevation.h"
#include "platform/Compositor.h"
#include "platform/FloatingWindow.h"
#include "render/Clipboard.h"
#include "render/Draw.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QWindow>

namespace pintalux {

namespace {

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

} // namespace

void PinnedImage::show(const QImage& image, double pixelScale, const QWidget* near)
{
    const auto* screen = near && near->isVisible() ? near->screen() : QGuiApplication::primaryScreen();
    if (image.isNull() || !screen)
        return;
    closeAtTheEnd();
    const auto visible = screen->availableGeometry();
    auto* pin = new PinnedImage(image, PinGeometry::sizeOnScreen(image.size(), pixelScale, visible.size()));
    QRect frame({}, pin->size());
    frame.moveCenter(visible.center());
    pin->move(frame.topLeft());
    openPins.append(pin);
    pin->QWidget::show();
    pin->raise();
    pin->activateWindow();
    HUD::show(u"Fijada en pantalla · doble clic para cerrar"_qs, u"pin.fill"_qs);
}

const QList<PinnedImage*>& PinnedImage::open() { return openPins; }

PinnedImage::PinnedImage(const QImage& picture, QSize size)
    : image(picture)
    , proportions(size)
    , translucent(hasCompositor())
{
    setWindowTitle(u"Imagen fijada"_qs);
    setAccessibleName(windowTitle());
    setAttribute(Qt::WA_TranslucentBackground, translucent);
    setAttribute(Qt::WA_OpaquePaintEvent, !translucent);
    setMouseTracking(true);
    resize(size);
    makePinWindow(*this);
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
    const double scale = image.width() / std::max(1.0, double(width()));
    Clipboard::copy(image, std::max(1.0, scale));
    HUD::show(u"Copiado al portapapeles"_qs, u"doc.on.clipboard"_qs);
}

// A fraction of a point was rounded up, which is less than a point in device pixels.
bool PinnedImage::isPixelForPixel() const
{
    const double ratio = devicePixelRatioF();
    const auto spare = QSizeF(size()) * ratio - QSizeF(image.size());
    return spare.width() > -1 && spare.height() > -1 && spare.width() < ratio && spare.height() < ratio;
}

void PinnedImage::drawPicture(QPainter& painter)
{
    const double ratio = devicePixelRatioF();
    if (isPixelForPixel()) {
        scaled = QImage();
        const QRectF pixels(QPointF(0, 0), QSizeF(image.size()) / ratio);
        painter.drawImage(rect(), image); // behind the picture's last pixels
        painter.drawImage(pixels, image);
        return;
    }
    const auto wanted = (QSizeF(size()) * ratio).toSize();
    if (scaled.size() != wanted)
        scaled = image.scaled(wanted, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    painter.drawImage(QRectF(rect()), scaled);
}

void PinnedImage::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double radius = translucent ? Theme::pinRadius : 0;
    if (translucent)
        painter.setClipPath(Draw::roundedRect(rect(), radius));
    else if (image.hasAlphaChannel())
        painter.fillRect(rect(), Theme::of(palette()).card);
    drawPicture(painter);
    painter.setClipping(false);
    Elevation::drawInnerEdge(rect(), radius, Theme::of(palette()), painter);
}

void PinnedImage::resizeEvent(QResizeEvent*) { keepProportions(*this, proportions); }

void PinnedImage::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    const auto point = event->position().toPoint();
    grip = Grip{event->globalPosition().toPoint(), geometry(), PinGeometry::edgesAt(point, size())};
}

void PinnedImage::mouseMoveEvent(QMouseEvent* event)
{
    if (!grip) {
        setCursor(PinGeometry::cursorFor(PinGeometry::edgesAt(event->position().toPoint(), size())));
        return;
    }
    const auto delta = event->globalPosition().toPoint() - grip->screenPoint;
    if (grip->edges) {
        setGeometry(PinGeometry::resized(grip->geometry, grip->edges, delta, proportions));
        return;
    }
    // Not before it is a drag: the window manager, once it moves a window, takes the release, and with it the
    // double click.
    if (!grip->moving && delta.manhattanLength() < QApplication::startDragDistance())
        return;
    if (!grip->moving && windowHandle()->startSystemMove()) {
        grip.reset();
        return;
    }
    grip->moving = true; // nobody else does it
    move(grip->geometry.topLeft() + delta);
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
    setWindowOpacity(std::clamp(windowOpacity() + steps * opacityPerStep, faintest, 1.0));
    event->accept();
}

void PinnedImage::contextMenuEvent(QContextMenuEvent* event)
{
    auto* menu = new Menu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    connect(menu->addAction(u"Copiar"_qs), &QAction::triggered, this, &PinnedImage::copyImage);
    connect(menu->addAction(u"Cerrar"_qs), &QAction::triggered, this, &PinnedImage::dismiss);
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
