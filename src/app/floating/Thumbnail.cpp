// SPDX-License-Identifier: MIT
#include "app/floating/Thumbnail.h"

#include "app/floating/ThumbnailCard.h"
#include "app/messages/HUD.h"
#include "platform/base/Error.h"
#include "platform/base/Worker.h"
#include "platform/desktop/ToolkitScreens.h"
#include "platform/desktop/WindowSystem.h"
#include "render/export/Clipboard.h"
#include "settings/Settings.h"

#include <QCoreApplication>
#include <QCursor>
#include <QFileInfo>
#include <QScreen>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

constexpr std::chrono::milliseconds wholeLifetime{8000};
constexpr std::chrono::milliseconds lifetimeAfterPointer{4000};
constexpr std::chrono::milliseconds checkInterval{500};

// Points.
constexpr int screenMargin = 8;

QRect visibleFrameOf(const QScreen* screen)
{
    return screen ? WindowSystem::current().visibleFrame(*screen) : QRect(0, 0, 1440, 900);
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
    look.setInterval(checkInterval);
    connect(&look, &QTimer::timeout, this, &ThumbnailController::checkLifetime);
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
    place = restingPlace(screenUnderPointer());
    panel->appear(place);
    connect(&WindowSystem::current(), &WindowSystem::panelsChanged, this, [this] {
        if (panel
            && panel->pos() == std::exchange(place, restingPlace(panel->screen()))) // nobody has moved it
            panel->move(place);
    });
    lifetime.start(wholeLifetime);
    look.start();
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

QPoint ThumbnailController::restingPlace(const QScreen* screen) const
{
    const auto visible = visibleFrameOf(screen);
    return QPoint(visible.right() - screenMargin, visible.bottom() - screenMargin)
        - panel->card().bottomRight();
}

void ThumbnailController::checkLifetime()
{
    if (!panel || isSaving)
        return;
    if (panel->isUnderPointer())
        lifetime.start(lifetimeAfterPointer);
    else if (!lifetime.isActive())
        close(true);
}

void ThumbnailController::close(bool animated)
{
    look.stop();
    lifetime.stop();
    if (!panel)
        return;
    auto* leaving = panel.data();
    panel.clear();
    leaving->disconnect(this);
    connect(leaving, &ThumbnailPanel::gone, this, &ThumbnailController::closed);
    animated ? leaving->leave() : leaving->retire();
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
