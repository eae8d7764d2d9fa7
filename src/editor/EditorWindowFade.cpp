#include "editor/EditorWindowFade.h"

#include "app/Theme.h"
#include "platform/Compositor.h"

#include <QGraphicsOpacityEffect>
#include <QPropertyAnimation>
#include <QWidget>

namespace pintalux::EditorWindowFade {

namespace {

constexpr char shownProperty[] = "pintaluxShown";

/// The panel's opacity while it fades. An effect costs a copy of the panel at each painting, so none stays.
QGraphicsOpacityEffect& effectOf(QWidget& panel)
{
    if (auto* effect = qobject_cast<QGraphicsOpacityEffect*>(panel.graphicsEffect()))
        return *effect;
    auto* effect = new QGraphicsOpacityEffect;
    effect->setOpacity(panel.isHidden() ? 0 : 1);
    panel.setGraphicsEffect(effect); // which owns it
    return *effect;
}

void finish(QWidget& panel, bool shown)
{
    panel.setGraphicsEffect(nullptr);
    panel.setVisible(shown);
}

} // namespace

void setShown(QWidget& panel, bool shown, bool animated)
{
    const auto before = panel.property(shownProperty);
    if (before.isValid() && before.toBool() == shown && (animated || !panel.graphicsEffect()))
        return;
    panel.setProperty(shownProperty, shown);
    panel.setAttribute(Qt::WA_TransparentForMouseEvents, !shown);
    if (!animated || prefersReducedMotion())
        return finish(panel, shown);
    auto& effect = effectOf(panel);
    panel.show();
    delete effect.findChild<QPropertyAnimation*>();
    auto* fade = new QPropertyAnimation(&effect, "opacity", &effect);
    fade->setDuration(Theme::paletteFadeMilliseconds);
    fade->setEasingCurve(QEasingCurve::OutCubic);
    fade->setEndValue(shown ? 1.0 : 0.0);
    // Not from within the animation, which goes with the effect.
    QObject::connect(
        fade, &QPropertyAnimation::finished, &panel, [&panel, shown] { finish(panel, shown); },
        Qt::QueuedConnection);
    fade->start();
}

} // namespace pintalux::EditorWindowFade
