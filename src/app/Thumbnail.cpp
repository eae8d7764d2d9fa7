#include "app/Thumbnail.h"

#include "app/HUD.h"
#include "app/Theme.h"
#include "app/ThumbnailCard.h"
#include "platform/Compositor.h"
#include "platform/Error.h"
#include "render/Clipboard.h"
#include "render/Exporter.h"

#include <QCursor>
#include <QFileInfo>
#include <QGuiApplication>
#include <QParallelAnimationGroup>
#include <QPropertyAnimation>
#include <QScreen>

namespace pintalux {

namespace {

constexpr std::chrono::milliseconds lifetime{8000};
constexpr std::chrono::milliseconds lifetimeAfterPointer{4000};
constexpr std::chrono::milliseconds checkInterval{500};

// Points.
constexpr int screenMargin = 8;
constexpr double slideInPart = 0.6; // of the card's width
constexpr int slideOut = 40;

QRect visibleScreen()
{
    const auto* screen = QGuiApplication::screenAt(QCursor::pos());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    return screen ? screen->availableGeometry() : QRect(0, 0, 1440, 900);
}

/// Glides the card to a place and an opacity, then calls `then`; at once on desktops that want no motion.
void glide(QWidget& card, QPoint place, double opacity, int milliseconds, const QEasingCurve& curve,
    const std::function<void()>& then)
{
    if (prefersReducedMotion())
        milliseconds = 0;
    auto* both = new QParallelAnimationGroup(&card);
    const auto add = [&](const char* property, const QVariant& target) {
        auto* animation = new QPropertyAnimation(&card, property, both);
        animation->setDuration(milliseconds);
        animation->setEasingCurve(curve);
        animation->setStartValue(card.property(property));
        animation->setEndValue(target);
        both->addAnimation(animation);
    };
    add("pos", place);
    add("windowOpacity", opacity);
    QObject::connect(both, &QAbstractAnimation::finished, &card, then);
    both->start(QAbstractAnimation::DeleteWhenStopped);
}

} // namespace

Thumbnail::Thumbnail(CaptureResult capture, std::optional<QString> saved, Actions others, QObject* parent)
    : QObject(parent)
    , shot(std::move(capture))
    , savedPath(std::move(saved))
    , actions(std::move(others))
{
    timer.setInterval(checkInterval);
    connect(&timer, &QTimer::timeout, this, &Thumbnail::checkLifetime);
}

Thumbnail::~Thumbnail()
{
    if (card)
        card->retire();
}

void Thumbnail::show()
{
    card = new ThumbnailCard(shot.image, shot.pixelScale, savedPath.has_value());
    connect(card, &ThumbnailCard::closeClicked, this, [this] { close(true); });
    connect(card, &ThumbnailCard::saveClicked, this, &Thumbnail::save);
    connect(card, &ThumbnailCard::editClicked, this, &Thumbnail::edit);
    connect(card, &ThumbnailCard::copyClicked, this, &Thumbnail::copy);
    card->fileToDrag = [this] { return fileToDrag(); }; // not once it is retired
    slideIn();
    deadline.setRemainingTime(lifetime);
    timer.start();
}

QPoint Thumbnail::restingPlace() const
{
    const auto visible = visibleScreen();
    const auto sheet = card->sheet();
    return QPoint(visible.right() - screenMargin, visible.bottom() - screenMargin) - sheet.bottomRight();
}

void Thumbnail::slideIn()
{
    const auto place = restingPlace();
    card->move(place + QPoint(int(card->sheet().width() * slideInPart), 0));
    card->setWindowOpacity(0);
    card->show();
    card->raise();
    glide(*card, place, 1, Theme::thumbnailInMilliseconds, Theme::slideCurve(), [] {});
}

void Thumbnail::checkLifetime()
{
    if (!card)
        return;
    if (card->isUnderPointer())
        deadline.setRemainingTime(lifetimeAfterPointer);
    else if (deadline.hasExpired())
        close(true);
}

void Thumbnail::close(bool animated)
{
    timer.stop();
    if (!card)
        return;
    auto* leaving = card.data();
    card.clear();
    leaving->disconnect(this);
    connect(leaving, &ThumbnailCard::gone, this, &Thumbnail::closed);
    const auto gone = [leaving] { leaving->retire(); };
    if (animated)
        glide(*leaving, leaving->pos() + QPoint(slideOut, 0), 0, Theme::thumbnailOutMilliseconds,
            QEasingCurve::InOutQuad, gone);
    else
        gone();
}

void Thumbnail::edit()
{
    const auto openEditor = actions.openEditor; // closing may be the end of this object
    const auto capture = shot;
    close(false);
    openEditor(capture);
}

void Thumbnail::copy()
{
    Clipboard::copy(shot.image, shot.pixelScale);
    HUD::show(u"Copiado al portapapeles"_qs, u"doc.on.clipboard"_qs);
    close(true);
}

void Thumbnail::save()
{
    if (!savedPath) {
        try {
            savedPath = Exporter::quickSave(shot.image, shot.pixelScale, shot.suggestedName);
        } catch (const Error& error) {
            HUD::show(u"No se pudo guardar: "_qs + error.localizedDescription, u"xmark.octagon"_qs);
            return;
        }
    }
    actions.revealFile(*savedPath);
    close(true);
}

std::optional<QString> Thumbnail::fileToDrag()
{
    if (savedPath && QFileInfo::exists(*savedPath))
        return savedPath;
    if (!temporaryPath || !QFileInfo::exists(*temporaryPath))
        temporaryPath = Exporter::temporaryFile(shot.image, shot.pixelScale, shot.suggestedName);
    return temporaryPath;
}

} // namespace pintalux
