// SPDX-License-Identifier: MIT
#include "app/floating/ThumbnailCard.h"

#include "controls/theme/ControlPainting.h"
#include "platform/graphics/Color.h"
#include "platform/graphics/Draw.h"
#include "platform/graphics/Symbol.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

// Points.
constexpr int padding = 8;
constexpr QSize pictureSize(240, 150);
constexpr int pictureGap = 6;
constexpr int actionHeight = 30;
constexpr int actionGap = 2;
constexpr double actionRadius = 9;
constexpr double actionIcon = 16;
constexpr double iconGap = 5;
constexpr int closeInset = 7;
constexpr int closeDisc = 22;
constexpr double closeCross = 14;
constexpr double pencilDisc = 40;
constexpr double pencilSize = 20;
constexpr int dragPictureWidth = 160;
constexpr double slideInPart = 0.6; // of the card's width
constexpr int slideOut = 40;

constexpr double floatingAlpha = 0.97;
constexpr double pictureBorderAlpha = 0.35;
constexpr QColor veilColor{0x12, 0x0E, 0x22};
constexpr double veilAlpha = 0.34;
constexpr QColor closeColor{0x14, 0x12, 0x1C};
constexpr double closeAlpha = 0.60;
constexpr double closeHoveredAlpha = 0.86;

} // namespace

/// A symbol and a word; coloured under the pointer.
class ThumbAction : public QAbstractButton {
public:
    explicit ThumbAction(QWidget* parent)
        : QAbstractButton(parent)
        , hover(this)
    {
        setFocusPolicy(Qt::NoFocus);
    }

    void setLook(const QString& symbolName, const QString& title)
    {
        symbol = symbolName;
        setText(title); // which repaints
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const auto& theme = Theme::of(palette());
        const double on = hover.amount();
        if (on > 0)
            painter.fillPath(Draw::roundedRect(rect(), actionRadius), faded(theme.selected, on));
        if (isDown())
            painter.fillPath(Draw::roundedRect(rect(), actionRadius), theme.hover);
        const auto font = Draw::systemFont(12, FontWeight::medium);
        const double width = actionIcon + iconGap + ControlPainting::textWidth(text(), font);
        const QRectF icon(
            std::round((this->width() - width) / 2), (height() - actionIcon) / 2, actionIcon, actionIcon);
        Symbol::draw(symbol, icon, mixed(theme.icon, theme.onSelected, on), painter);
        ControlPainting::text(text(), font, mixed(theme.text, theme.onSelected, on),
            QRectF(icon.right() + iconGap, 0, this->width() - icon.right() - iconGap, height()),
            Qt::AlignLeft, painter);
    }

private:
    QString symbol;
    HoverFade hover;
};

namespace {

/// The cross in the picture's corner; more solid while the pointer is on the card.
class CloseButton : public QAbstractButton {
public:
    explicit CloseButton(QWidget* parent)
        : QAbstractButton(parent)
    {
        setFocusPolicy(Qt::NoFocus);
        setAccessibleName(u"Cerrar"_s);
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        QRectF disc(0, 0, closeDisc, closeDisc);
        disc.moveCenter(QRectF(rect()).center());
        const double alpha = window()->underMouse() ? closeHoveredAlpha : closeAlpha;
        painter.fillPath(Draw::ellipse(disc), withAlpha(closeColor, underMouse() ? 1 : alpha));
        QRectF cross(0, 0, closeCross, closeCross);
        cross.moveCenter(disc.center());
        Symbol::draw(u"close", cross, QColor(Qt::white), painter);
    }
};

/// The picture itself: a click annotates it, a drag takes it out.
class ThumbnailView : public QWidget {
public:
    ThumbnailView(const QImage& picture, double pixelScale, QWidget* parent)
        : QWidget(parent)
        , image(picture)
        , shownSize(QSizeF(picture.size()) / pixelScale)
        , hover(this, Theme::toggleMilliseconds, Theme::toggleMilliseconds, QEasingCurve::OutCubic)
    {
        if (shownSize.width() > pictureSize.width() || shownSize.height() > pictureSize.height())
            shownSize.scale(pictureSize, Qt::KeepAspectRatio);
        setToolTip(u"Clic para anotar · Arrastra para soltar en otra app"_s);
        setAttribute(Qt::WA_AlwaysShowToolTips);
        setAccessibleName(u"Captura"_s);
    }

    std::function<void()> clicked;
    std::function<void(const QPixmap&)> dragged;

    /// What is taken along under the pointer.
    QPixmap dragPicture()
    {
        const double ratio = devicePixelRatioF();
        const double width = std::min<double>(dragPictureWidth, shownSize.width());
        auto small
            = image.scaled((shownSize * (width / shownSize.width()) * ratio).toSize().expandedTo({1, 1}),
                Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        auto pixmap = QPixmap::fromImage(std::move(small));
        pixmap.setDevicePixelRatio(ratio);
        return pixmap;
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QRectF frame(rect());
        const auto shape = Draw::roundedRect(frame, Theme::thumbnailImageRadius);
        painter.setClipPath(shape);
        painter.fillRect(frame, Theme::of(palette()).well);
        const auto& picture = atThisSize();
        const QSizeF size = QSizeF(picture.size()) / devicePixelRatioF();
        QRectF place({}, size);
        place.moveCenter(frame.center());
        painter.drawImage(QRectF(wholePixels(place.topLeft()), size), picture);
        if (hover.amount() > 0) {
            painter.fillRect(frame, withAlpha(veilColor, veilAlpha * hover.amount()));
            painter.setOpacity(hover.amount());
            drawPencil(frame.center(), painter);
            painter.setOpacity(1);
        }
        painter.setClipping(false);
        painter.setPen(QPen(withAlpha(Qt::white, pictureBorderAlpha), 1));
        painter.drawPath(
            Draw::roundedRect(frame.adjusted(0.5, 0.5, -0.5, -0.5), Theme::thumbnailImageRadius - 0.5));
    }
    void enterEvent(QEnterEvent*) override { hover.setOn(true); }
    void leaveEvent(QEvent*) override { hover.setOn(false); }
    void mousePressEvent(QMouseEvent* event) override
    {
        if (event->button() == Qt::LeftButton)
            pressedAt = event->position().toPoint();
    }
    void mouseMoveEvent(QMouseEvent* event) override
    {
        const auto far = [&](QPoint from) {
            return (event->position().toPoint() - from).manhattanLength()
                >= QApplication::startDragDistance();
        };
        if (!pressedAt || !far(*pressedAt))
            return;
        pressedAt.reset();
        hover.setOn(false);
        dragged(dragPicture());
    }
    void mouseReleaseEvent(QMouseEvent* event) override
    {
        const bool isClick = pressedAt && rect().contains(event->position().toPoint());
        pressedAt.reset();
        if (isClick)
            clicked();
    }

private:
    QPointF wholePixels(QPointF point) const
    {
        const double ratio = devicePixelRatioF();
        return {std::round(point.x() * ratio) / ratio, std::round(point.y() * ratio) / ratio};
    }

    const QImage& atThisSize()
    {
        const auto wanted = (shownSize * devicePixelRatioF()).toSize().expandedTo({1, 1});
        if (scaled.size() != wanted)
            scaled = image.scaled(wanted, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        return scaled;
    }

    void drawPencil(QPointF center, QPainter& painter) const
    {
        painter.fillPath(Draw::ellipse(QRectF(center.x() - pencilDisc / 2, center.y() - pencilDisc / 2,
                             pencilDisc, pencilDisc)),
            Qt::white);
        Symbol::draw(u"pencil.tip",
            QRectF(center.x() - pencilSize / 2, center.y() - pencilSize / 2, pencilSize, pencilSize),
            Theme::light().onSelected, painter);
    }

    QImage image;
    QImage scaled; ///< at this screen's device pixels
    QSizeF shownSize;
    Fade hover;
    std::optional<QPoint> pressedAt;
};

} // namespace

ThumbnailPanel::ThumbnailPanel(const QImage& image, double pixelScale, bool isSaved)
    : sheet(*this, WindowRole::panel, {.radius = Theme::thumbnailRadius, .margin = int(Theme::shadowMargin)})
    , presence(this, Theme::thumbnailInMilliseconds, Theme::thumbnailOutMilliseconds, Theme::slideCurve())
{
    setWindowTitle(u"Pintalux"_s);
    setAccessibleName(u"Captura"_s);
    const QSize cardSize(pictureSize.width() + 2 * padding,
        padding + pictureSize.height() + pictureGap + actionHeight + padding);
    constexpr int margin = int(Theme::shadowMargin);
    setFixedSize(cardSize + QSize(2 * margin, 2 * margin));

    const QRect place(card().topLeft() + QPoint(padding, padding), pictureSize);
    auto* picture = new ThumbnailView(image, pixelScale, this);
    picture->setGeometry(place);
    picture->clicked = [this] { Q_EMIT editClicked(); };
    picture->dragged = [this](const QPixmap& pixmap) { dragOut(pixmap); };
    addButtons(place);
    setSaved(isSaved);
    connect(&presence, &Glide::changed, this, [this] {
        setWindowOpacity(presence.amount());
        move(home + QPoint(int(std::lround((1 - presence.amount()) * away)), 0));
    });
    connect(&presence, &Glide::finished, this, [this] {
        if (!presence.isOn())
            retire();
    });
}

ThumbnailPanel::~ThumbnailPanel() = default;

void ThumbnailPanel::addButtons(const QRect& picture)
{
    using Clicked = void (ThumbnailPanel::*)();
    struct Row {
        QString symbol;
        QString title;
        Clicked clicked;
    };
    const std::array<Row, 3> rows{{
        {{}, {}, &ThumbnailPanel::saveClicked}, // see `setSaved`
        {u"pencil.tip"_s, u"Anotar"_s, &ThumbnailPanel::editClicked},
        {u"doc.on.doc"_s, u"Copiar"_s, &ThumbnailPanel::copyClicked},
    }};
    const int count = int(rows.size());
    const int room = picture.width() - (count - 1) * actionGap;
    for (int index = 0; index < count; ++index) {
        const auto& row = rows[std::size_t(index)];
        auto* action = new ThumbAction(this);
        action->setLook(row.symbol, row.title);
        if (index == 0)
            saveButton = action;
        const int left = index * room / count + index * actionGap;
        const int right = (index + 1) * room / count + index * actionGap;
        action->setGeometry(
            picture.left() + left, picture.bottom() + 1 + pictureGap, right - left, actionHeight);
        connect(action, &QAbstractButton::clicked, this, row.clicked);
    }
    auto* close = new CloseButton(this);
    constexpr int target = 2 * closeInset + closeDisc - 4; // easier to hit than it looks
    close->setGeometry(picture.right() + 1 - target - 2, picture.top() + 2, target, target);
    connect(close, &QAbstractButton::clicked, this, &ThumbnailPanel::closeClicked);
    closeButton = close;
}

void ThumbnailPanel::setSaved(bool isSaved)
{
    saveButton->setLook(
        isSaved ? u"folder"_s : u"square.and.arrow.down"_s, isSaved ? u"Mostrar"_s : u"Guardar"_s);
}

bool ThumbnailPanel::isUnderPointer() const
{
    return dragging || card().translated(pos()).contains(QCursor::pos());
}

void ThumbnailPanel::appear(QPoint place)
{
    home = place;
    away = card().width() * slideInPart;
    presence.jump(false);
    show();
    raise();
    presence.setOn(true);
}

void ThumbnailPanel::leave()
{
    away = slideOut;
    home = pos() - QPoint(int(std::lround((1 - presence.amount()) * away)), 0);
    presence.setCurve(QEasingCurve::InOutQuad);
    presence.setOn(false);
}

void ThumbnailPanel::retire()
{
    retired = true;
    fileToDrag = nullptr;
    hide();
    if (!dragging)
        deleteLater();
    Q_EMIT gone();
}

void ThumbnailPanel::dragOut(const QPixmap& picture)
{
    const auto path = fileToDrag ? fileToDrag() : std::nullopt;
    if (!path)
        return;
    auto* data = new QMimeData;
    data->setUrls({QUrl::fromLocalFile(*path)});
    auto* drag = new QDrag(this); // deletes itself
    drag->setMimeData(data);
    drag->setPixmap(picture);
    drag->setHotSpot(QRect({}, picture.deviceIndependentSize().toSize()).center());
    dragging = true;
    drag->exec(Qt::CopyAction);
    dragging = false;
    if (retired)
        deleteLater();
}

void ThumbnailPanel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    sheet.paint(Elevation::Level::floating, withAlpha(Theme::of(palette()).card, floatingAlpha), painter);
}

// By its background the card can be moved out of the way.
void ThumbnailPanel::mousePressEvent(QMouseEvent* event) { gripPoint = event->position().toPoint(); }

void ThumbnailPanel::mouseMoveEvent(QMouseEvent* event)
{
    if (event->buttons() & Qt::LeftButton)
        move(event->globalPosition().toPoint() - gripPoint);
}

void ThumbnailPanel::enterEvent(QEnterEvent*) { closeButton->update(); }

void ThumbnailPanel::leaveEvent(QEvent*) { closeButton->update(); }

} // namespace pintalux
