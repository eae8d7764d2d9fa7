// SPDX-License-Identifier: MIT
#include "capture/ScreenCapture.h"

#include "platform/base/StringEnum.h"
#include "platform/base/Worker.h"
#include "platform/desktop/NoScreenSource.h"
#include "platform/graphics/Geometry.h"

#include <QColorSpace>
#include <QPainter>
#include <QRegion>
#include <QThread>

#include <algorithm>
#include <array>
#include <span>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

constexpr unsigned long retryMilliseconds = 350;
constexpr double smallestCandidate = 40; // points; a window must exceed it both ways

struct CaptureErrorRow {
    CaptureError value;
    QStringView description;
};
constexpr std::array<CaptureErrorRow, 2> captureErrorTable{{
    {CaptureError::noDisplay, u"No se encontró ninguna pantalla para capturar."},
    {CaptureError::permissionDenied, u"Pintalux necesita el permiso de Grabación de pantalla."},
}};
static_assert(isComplete(captureErrorTable, &CaptureErrorRow::value));
const QString captureErrorDomain = QStringLiteral("CaptureError");

std::shared_ptr<ScreenSource>& currentSource()
{
    static std::shared_ptr<ScreenSource> source;
    return source;
}

std::shared_ptr<ScreenSource> currentOrNoSource()
{
    const auto& current = currentSource();
    return current ? current : std::make_shared<NoScreenSource>();
}

ScreenCapture::Presenter& currentPresenter()
{
    static ScreenCapture::Presenter presenter;
    return presenter;
}

// One thread, so that captures follow one another.
Worker& captureThread()
{
    static Worker& thread = *new Worker;
    return thread;
}

// Tries a second time, a moment later, what failed for a moment only.
template <typename Target> Screenshot screenshot(ScreenSource& source, const Target& target)
{
    try {
        return source.screenshot(target);
    } catch (const Error& error) {
        if (error.domain != ScreenSource::errorDomain || error.code != ScreenSource::temporaryFailure)
            throw;
    }
    QThread::msleep(retryMilliseconds);
    return source.screenshot(target);
}

/// The decoration as the screens show it; empty when that is not all of it.
QList<WindowInfo::DecorationPart> shownDecoration(
    const WindowInfo& window, const QList<FrozenDisplay>& displays, std::span<const WindowInfo> inFront)
{
    constexpr double widestShadow = 48; // points that the shadow of what is in front reaches beyond it
    const auto decoration = QRegion(window.nativeRect) - *window.readableRect;
    for (const auto& other : inFront) {
        const int reach = qRound(widestShadow * other.pixelScale);
        if (decoration.intersects(other.nativeRect.adjusted(-reach, -reach, reach, reach)))
            return {};
    }
    QList<WindowInfo::DecorationPart> parts;
    for (const auto& rect : decoration) {
        const auto display = std::ranges::find_if(
            displays, [&](const FrozenDisplay& each) { return each.screen.nativeRect.contains(rect); });
        if (display == displays.end())
            return {};
        parts.append({rect.topLeft() - window.nativeRect.topLeft(),
            display->image.copy(rect.translated(-display->screen.nativeRect.topLeft()))});
    }
    return parts;
}

/// Keeps with the windows what can only be read from the screens, and drops those of which nothing can.
void takeDecorations(FrozenScreens& frozen, const ShareableContent& content, qint64 ownProcessId)
{
    for (auto& candidate : frozen.windows) {
        if (!candidate.window.readableRect)
            continue;
        QList<WindowInfo> inFront;
        for (const auto& window : content.windows) {
            if (window.id == candidate.window.id)
                break;
            if (window.onScreen && window.layer >= 0 && window.processId != ownProcessId)
                inFront.append(window);
        }
        candidate.window.decoration = shownDecoration(candidate.window, frozen.displays, inFront);
    }
    frozen.windows.removeIf([](const WindowCandidate& candidate) {
        const auto& window = candidate.window;
        return window.readableRect && window.readableRect->isEmpty() && window.decoration.isEmpty();
    });
}

/// Puts what the window shows into its decoration, where that is known.
Screenshot withDecoration(const WindowInfo& window, Screenshot shot)
{
    if (window.decoration.isEmpty() || shot.image.size() != window.readableRect->size())
        return shot;
    QImage whole(window.nativeRect.size(), QImage::Format_ARGB32_Premultiplied);
    if (whole.isNull())
        return shot;
    whole.fill(Qt::transparent);
    QPainter painter(&whole);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    for (const auto& part : window.decoration)
        painter.drawImage(part.at, part.picture);
    painter.drawImage(window.readableRect->topLeft() - window.nativeRect.topLeft(), shot.image);
    painter.end();
    if (!shot.image.hasAlphaChannel())
        whole.convertTo(QImage::Format_RGB32);
    whole.setColorSpace(QColorSpace::SRgb);
    return {std::move(whole), shot.pixelScale};
}

Screenshot windowShot(ScreenSource& source, const WindowInfo& window)
{
    const bool isReadable = !window.readableRect || !window.readableRect->isEmpty();
    return withDecoration(
        window, isReadable ? screenshot(source, window) : Screenshot{{}, window.pixelScale});
}

FrozenScreens freeze(ScreenSource& source, const QList<ToolkitScreen>& toolkit)
{
    const auto content = source.shareableContent(toolkit);
    const auto hidden = source.hideOwnWindows();
    FrozenScreens frozen;
    for (const auto& screen : content.screens) {
        if (!screen.attached)
            continue;
        auto shot = screenshot(source, screen);
        frozen.displays.append({screen, std::move(shot.image), shot.pixelScale});
    }
    if (frozen.displays.isEmpty())
        throw toError(CaptureError::noDisplay);
    frozen.listsWindows = content.listsWindows;
    frozen.windows = ScreenCapture::windowCandidates(content, source.ownProcessId());
    takeDecorations(frozen, content, source.ownProcessId());
    return frozen;
}

CaptureResult takeDisplay(ScreenSource& source, const ScreenInfo& screen)
{
    const auto hidden = source.hideOwnWindows();
    auto shot = screenshot(source, screen);
    return {std::move(shot.image), shot.pixelScale, std::nullopt};
}

CaptureResult takeDisplay(ScreenSource& source, const QList<ToolkitScreen>& toolkit, QPointF pointer)
{
    const auto content = source.shareableContent(toolkit);
    if (content.screens.isEmpty())
        throw toError(CaptureError::noDisplay);
    const auto underPointer = std::ranges::find_if(content.screens,
        [&](const ScreenInfo& screen) { return screen.attached && containsPoint(screen.frame, pointer); });
    return takeDisplay(
        source, underPointer == content.screens.end() ? content.screens.first() : *underPointer);
}

CaptureResult takeDisplay(ScreenSource& source, const QList<ToolkitScreen>& toolkit, const QString& name)
{
    const auto content = source.shareableContent(toolkit);
    const auto found = std::ranges::find(content.screens, name, &ScreenInfo::name);
    if (found != content.screens.end())
        return takeDisplay(source, *found);
    if (content.screens.isEmpty())
        throw toError(CaptureError::noDisplay);
    QStringList names;
    for (const auto& screen : content.screens)
        names << screen.name;
    throw Error(
        Error::ownDomain, 6, u"No hay ninguna pantalla «%1»; hay: %2."_s.arg(name, names.join(u", "_s)));
}

// Any program may give its window a title of any length, and measuring a page of text for the label takes the
// overlay a second. No screen shows more than this.
QString beginning(const QString& title)
{
    constexpr qsizetype mostCharacters = 1000;
    const bool splitsPair = title.size() > mostCharacters && title[mostCharacters - 1].isHighSurrogate();
    return title.left(splitsPair ? mostCharacters - 1 : mostCharacters);
}

QString candidateTitle(const WindowInfo& window)
{
    QStringList parts{window.applicationName, window.title};
    parts.removeAll(QString());
    return beginning(parts.join(u" — "_s));
}

} // namespace

QString errorDescription(CaptureError error)
{
    return captureErrorTable[static_cast<std::size_t>(error)].description.toString();
}

Error toError(CaptureError error)
{
    return {captureErrorDomain, static_cast<int>(error), errorDescription(error)};
}

std::optional<CaptureError> asCaptureError(const Error& error)
{
    if (error.domain != captureErrorDomain)
        return std::nullopt;
    return static_cast<CaptureError>(error.code);
}

void ScreenCapture::setPresenter(Presenter presenter) { currentPresenter() = std::move(presenter); }

void ScreenCapture::requestPermissionInteractive()
{
    const auto from = source();
    if (const auto& show = currentPresenter().showPermissionHelp; !from->requestPermission() && show)
        show(from->permissionHelp());
}

void ScreenCapture::report(const Error& error)
{
    const bool declined
        = error.domain == ScreenSource::errorDomain && error.code == ScreenSource::userDeclined;
    if (declined || (asCaptureError(error) && !hasPermission()))
        return requestPermissionInteractive();
    if (const auto& show = currentPresenter().showMessage)
        show(u"No se pudo capturar: "_s + error.localizedDescription, u"exclamationmark.triangle"_s);
}

void ScreenCapture::setSource(std::shared_ptr<ScreenSource> source) { currentSource() = std::move(source); }

std::shared_ptr<ScreenSource> ScreenCapture::source() { return currentOrNoSource(); }

bool ScreenCapture::hasPermission() { return source()->hasPermission(); }

bool ScreenCapture::ensurePermission()
{
    if (hasPermission())
        return true;
    requestPermissionInteractive();
    return false;
}

QFuture<FrozenScreens> ScreenCapture::freezeAllDisplays()
{
    return runOn(
        captureThread(), [from = source(), toolkit = toolkitScreens()] { return freeze(*from, toolkit); });
}

QFuture<CaptureResult> ScreenCapture::captureDisplayUnderMouse()
{
    const auto from = source();
    return runOn(captureThread(), [from, toolkit = toolkitScreens(), pointer = from->pointerLocation()] {
        return takeDisplay(*from, toolkit, pointer);
    });
}

QFuture<CaptureResult> ScreenCapture::captureDisplay(const QString& name)
{
    if (name.isEmpty())
        return captureDisplayUnderMouse();
    return runOn(captureThread(),
        [from = source(), toolkit = toolkitScreens(), name] { return takeDisplay(*from, toolkit, name); });
}

QFuture<CaptureResult> ScreenCapture::capture(const WindowInfo& window)
{
    return runOn(captureThread(), [from = source(), window] {
        auto shot = windowShot(*from, window);
        return CaptureResult{std::move(shot.image), shot.pixelScale, std::nullopt};
    });
}

QList<WindowCandidate> ScreenCapture::windowCandidates(const ShareableContent& content, qint64 ownProcessId)
{
    QList<WindowCandidate> candidates;
    QList<WindowInfo> small;
    for (const auto& window : content.windows) {
        if (!window.onScreen || window.layer != 0 || window.processId == ownProcessId)
            continue;
        if (window.frame.width() > smallestCandidate && window.frame.height() > smallestCandidate)
            candidates.append({window, window.frame, candidateTitle(window), small});
        else
            small.append(window);
    }
    return candidates;
}

} // namespace pintalux
