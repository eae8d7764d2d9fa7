// SPDX-License-Identifier: MIT
#include "app/floating/Thumbnail.h"

#include "app/floating/ThumbnailCard.h"
#include "app/messages/HUD.h"
#include "controls/theme/Theme.h"
#include "platform/base/Error.h"
#include "platform/base/Worker.h"
#include "platform/desktop/ToolkitScreens.h"
#include "platform/windowing/Compositor.h"
#include "platform/windowing/VisibleFrame.h"
#include "render/export/Clipboard.h"
#include "settings/Settings.h"

#include <QCoreApplication>
#include <QCursor>
#include <QFileInfo>
#include <QParallelAnimationGroup>
#include <QPropertyAnimation>
#include <QScreen>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

constexpr std::chrono::milliseconds lifetime{8000};
constexpr std::chrono::milliseconds lifetimeAfterPointer{4000};
constexpr std::chrono::milliseconds checkInterval{500};

// Points.
constexpr int screenMargin = 8;
constexpr double slideInPart = 0.6; // of the panel's width
constexpr int slideOut = 40;

QRect visibleScreen()
{
    const auto* screen = screenUnderPointer();
    return screen ? visibleFrame(*screen) : QRect(0, 0, 1440, 900);
}

/// Glides the panel to a place and an opacity, then calls `then`; at once on desktops that want no motion.
void glide(QWidget& panel, QPoint place, double opacity, int milliseconds, const QEasingCurve& curve,
    const std::function<void()>& then)
{
    if (prefersReducedMotion())
        milliseconds = 0;
    auto* both = new QParallelAnimationGroup(&panel);
    const auto add = [&](const char* property, const QVariant& target) {
        auto* animation = new QPropertyAnimation(&panel, property, both);
        animation->setDuration(milliseconds);
        animation->setEasingCurve(curve);
        animation->setStartValue(panel.property(property));
        animation->setEndValue(target);
        both->addAnimation(animation);
    };
    add("pos", place);
    add("windowOpacity", opacity);
    QObject::connect(both, &QAbstractAnimation::finished, &panel, then);
    both->start(QAbstractAnimation::DeleteWhenStopped);
}

} // namespace

ThumbnailController::ThumbnailController(CaptureResult capture, std::optional<Exporter::Saving> written,
    const Settings& store, Actions others, QObject* parent)
    : QObject(parent)
    , shot(std::move(capture))
    , saving(std::move(written))
    , settings(store)
    , actions(std::move(others))
{
    timer.setInterval(checkInterval);
    connect(&timer, &QTimer::timeout, this, &ThumbnailController::checkLifetime);
    if (saving)
        whenFinished(saving->path, this, [this](const QFuture<QString>& path) { wasWritten(path); });
}

ThumbnailController::~ThumbnailController()
{
    if (panel)
        panel->retire();
}

void ThumbnailController::show()
{
    panel = new ThumbnailPanel(shot.image, shot.pixelScale, saving.has_value());
    connect(panel, &ThumbnailPanel::closeClicked, this, [this] { close(true); });
    connect(panel, &ThumbnailPanel::saveClicked, this, &ThumbnailController::save);
    connect(panel, &ThumbnailPanel::editClicked, this, &ThumbnailController::edit);
    connect(panel, &ThumbnailPanel::copyClicked, this, &ThumbnailController::copy);
    panel->fileToDrag = [this] { return fileToDrag(); }; // not once it is retired
    slideIn();
    deadline.setRemainingTime(lifetime);
    timer.start();
}

void ThumbnailController::wasWritten(const QFuture<QString>& path)
{
    try {
        savedPath = path.result();
    } catch (const Error&) {
        saving.reset();
        if (panel)
            panel->setSaved(false);
    }
}

QPoint ThumbnailController::restingPlace() const
{
    const auto visible = visibleScreen();
    const auto sheet = panel->sheet();
    return QPoint(visible.right() - screenMargin, visible.bottom() - screenMargin) - sheet.bottomRight();
}

void ThumbnailController::slideIn()
{
    const auto place = restingPlace();
    panel->move(place + QPoint(int(panel->sheet().width() * slideInPart), 0));
    panel->setWindowOpacity(0);
    panel->show();
    panel->raise();
    glide(*panel, place, 1, Theme::thumbnailInMilliseconds, Theme::slideCurve(), [] {});
}

void ThumbnailController::checkLifetime()
{
    if (!panel || isSaving)
        return;
    if (panel->isUnderPointer())
        deadline.setRemainingTime(lifetimeAfterPointer);
    else if (deadline.hasExpired())
        close(true);
}

void ThumbnailController::close(bool animated)
{
    timer.stop();
    if (!panel)
        return;
    auto* leaving = panel.data();
    panel.clear();
    leaving->disconnect(this);
    connect(leaving, &ThumbnailPanel::gone, this, &ThumbnailController::closed);
    const auto gone = [leaving] { leaving->retire(); };
    if (animated)
        glide(*leaving, leaving->pos() + QPoint(slideOut, 0), 0, Theme::thumbnailOutMilliseconds,
            QEasingCurve::InOutQuad, gone);
    else
        gone();
}

void ThumbnailController::edit()
{
    const auto openEditor = actions.openEditor; // closing may be the end of this object
    const auto capture = shot;
    close(false);
    openEditor(capture);
}

void ThumbnailController::copy()
{
    Clipboard::copy(shot.image, shot.pixelScale);
    HUD::show(u"Copiado al portapapeles"_s, u"doc.on.clipboard"_s);
    close(true);
}

void ThumbnailController::save()
{
    if (isSaving)
        return;
    if (savedPath) {
        actions.revealFile(*savedPath);
        return close(true);
    }
    isSaving = true;
    const auto write = [shot = shot, folder = settings.saveFolder()] {
        return Exporter::quickSave(shot.image, shot.pixelScale, folder, shot.suggestedName);
    };
    // Whether the card is still there or not: a new capture may have closed it.
    const auto tell = [card = QPointer(this), reveal = actions.revealFile](const QFuture<QString>& written) {
        if (card)
            card->isSaving = false;
        try {
            const auto path = written.result();
            reveal(path);
            if (card) {
                card->savedPath = path;
                card->close(true);
            }
        } catch (const Error& error) {
            HUD::show(u"No se pudo guardar: "_s + error.localizedDescription, u"xmark.octagon"_s);
        }
    };
    const auto path = saving ? saving->path : runOn(Exporter::savingThread(), write);
    whenFinished(path, QCoreApplication::instance(), tell);
}

std::optional<QString> ThumbnailController::fileToDrag()
{
    if (savedPath && QFileInfo::exists(*savedPath))
        return savedPath;
    if (!temporaryPath || !QFileInfo::exists(*temporaryPath))
        temporaryPath = Exporter::temporaryFile(
            shot.image, shot.pixelScale, shot.suggestedName, saving ? saving->stamp : Exporter::wallClock());
    return temporaryPath;
}

} // namespace pintalux
