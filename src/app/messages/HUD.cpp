// SPDX-License-Identifier: MIT
#include "app/messages/HUD.h"

#include "controls/Sheet.h"
#include "controls/theme/Fade.h"
#include "model/Palette.h"
#include "platform/base/SkippableTimer.h"
#include "platform/desktop/ToolkitScreens.h"
#include "platform/desktop/WindowSystem.h"
#include "platform/graphics/GraphicsContext.h"
#include "platform/graphics/Symbol.h"
#include "platform/graphics/TextBlock.h"

#include <QApplication>
#include <QLinearGradient>
#include <QPaintEvent>
#include <QScreen>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace pintalux::HUD {

namespace {

constexpr int fadeInMilliseconds = 180;
constexpr int shownMilliseconds = 2000;
constexpr int fadeOutMilliseconds = 300;

// Points.
constexpr double aboveVisibleBottom = 56;
constexpr double freeSpace = 16; ///< around the capsule, part of the panel that stands above the bottom
constexpr int shadowSpace = 32;  ///< around the capsule in our window: the shadow fades out within it
constexpr double sidePadding = 18;
constexpr double verticalPadding = 11;
constexpr double glyphSize = 18;
constexpr double discSize = 14;
constexpr double gap = 9;
constexpr double widestText = 520;
constexpr double largestRadius = 20;
constexpr int mostLines = 4;

constexpr QColor capsuleColor{0x1B, 0x1A, 0x22, 230};
constexpr QColor ringColor{255, 255, 255, 41};
constexpr QColor discRingColor{255, 255, 255, 179};
constexpr QColor shadowColor{0, 0, 0, 66};

TextBlock laidOut(const QString& text, std::optional<double> wrapWidth)
{
    return {text, {Draw::systemFont(13, FontWeight::medium), Qt::white}, wrapWidth};
}

/// One line where it fits into `width`, else up to `mostLines` lines that end in "…" where that is not
/// enough.
TextBlock fitted(const QString& text, double width)
{
    auto line = laidOut(text, std::nullopt);
    const double highest = laidOut(QString(mostLines - 1, u'\n'), std::nullopt).size().height() + 0.5;
    if (line.size().width() <= width && line.size().height() <= highest)
        return line;
    auto block = laidOut(text, width);
    if (block.size().height() <= highest)
        return block;
    qsizetype fits = 0;
    qsizetype tooMany = text.size();
    while (tooMany - fits > 1) {
        const auto middle = (fits + tooMany) / 2;
        const bool good = laidOut(text.left(middle) + u'…', width).size().height() <= highest;
        (good ? fits : tooMany) = middle;
    }
    if (fits > 0 && text[fits - 1].isHighSurrogate())
        --fits;
    return laidOut(text.left(fits).trimmed() + u'…', width);
}

/// The widget of one message.
class Panel : public QWidget {
public:
    Panel(
        const QString& text, const QString& symbol, const std::optional<QColor>& tintColor, QSizeF available)
        : message(text)
        , symbolName(symbol)
        , tint(tintColor)
        , block(fitted(text,
              std::min(widestText, available.width() - 2 * (freeSpace + sidePadding) - glyphSize - gap)))
        , capsule(QPointF(shadowSpace, shadowSpace), capsuleSize())
        , sheet(*this, WindowRole::message, {.radius = radius(), .margin = shadowSpace})
        , fade(this, fadeInMilliseconds, fadeOutMilliseconds, QEasingCurve::Linear)
    {
        setFocusPolicy(Qt::NoFocus);
        setWindowTitle(u"Pintalux"_s);
        setAccessibleName(text);
        setFixedSize(capsule.size().toSize() + QSize(2 * shadowSpace, 2 * shadowSpace));
        connect(&sheet, &Sheet::changed, this, [this] { picture = {}; });
        // Unless a newer message has taken its place meanwhile.
        connect(&fade, &Glide::finished, this, [this] {
            if (!fade.isOn() && isVisible())
                dismiss();
        });
    }

    void appear() { fade.setOn(true, !sheet.isTranslucent()); }

    void leaveInTime()
    {
        life.setTimerType(Qt::PreciseTimer);
        life.callOnTimeout(this, &Panel::leave);
        life.start(shownMilliseconds);
    }

    /// Fades out and goes.
    void leave() { fade.setOn(false, !sheet.isTranslucent()); }

    void goAtOnce()
    {
        life.stop();
        hide();
        deleteLater(); // it may be its own timer that asks
    }

    const QString message;

protected:
    void paintEvent(QPaintEvent*) override
    {
        if (picture.isNull() || picture.devicePixelRatioF() != devicePixelRatioF())
            picture = render();
        QPainter painter(this);
        painter.setOpacity(sheet.isTranslucent() ? fade.amount() : 1);
        painter.drawImage(QPointF(0, 0), picture);
    }

private:
    QSizeF capsuleSize() const
    {
        return {markWidth() + gap + std::ceil(block.size().width()) + 2 * sidePadding,
            std::max(glyphSize, std::ceil(block.size().height())) + 2 * verticalPadding};
    }
    double markWidth() const { return tint ? discSize : glyphSize; }
    double radius() const { return std::min(capsule.height() / 2, largestRadius); }

    QPainterPath outline(double inset) const
    {
        QPainterPath path;
        const auto rect = capsule.adjusted(inset, inset, -inset, -inset);
        path.addRoundedRect(rect, radius() - inset, radius() - inset);
        return path;
    }

    // Drawn once: the shadow is too dear for every step of a fade.
    QImage render() const
    {
        const double ratio = devicePixelRatioF();
        QImage image((QSizeF(size()) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(ratio);
        auto opaque = capsuleColor;
        opaque.setAlpha(255);
        image.fill(sheet.isTranslucent() ? QColor(Qt::transparent) : opaque);
        QPainter painter(&image);
        GraphicsContext context(painter);
        if (sheet.isTranslucent()) {
            drawShadow(painter, ratio);
            context.fill(outline(0), capsuleColor);
        }
        context.stroke(outline(0.5), {ringColor, 1});
        drawMark(context);
        const double textTop = capsule.center().y() - block.size().height() / 2;
        context.draw(block, {capsule.left() + sidePadding + markWidth() + gap, textTop});
        return image;
    }

    // Only outside the capsule, whose own colour lets what is below shine through.
    void drawShadow(QPainter& painter, double ratio) const
    {
        painter.save();
        QPainterPath outside;
        outside.addRect(QRectF(QPointF(0, 0), QSizeF(size())));
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setClipPath(outside.subtracted(outline(0)));
        GraphicsContext context(painter);
        context.setShadow({shadowColor, {0, 6 * ratio}, 20 * ratio});
        context.fill(outline(0), QColor(Qt::black));
        painter.restore();
    }

    void drawMark(GraphicsContext& context) const
    {
        const QRectF mark(
            capsule.left() + sidePadding, capsule.center().y() - markWidth() / 2, markWidth(), markWidth());
        if (tint) {
            QPainterPath disc;
            disc.addEllipse(mark.adjusted(0.5, 0.5, -0.5, -0.5));
            context.fillAndStroke(disc, *tint, {discRingColor, 1});
            return;
        }
        QLinearGradient chalk(mark.topLeft(), mark.bottomRight());
        chalk.setColorAt(0, Palette::chalkWhite);
        chalk.setColorAt(1, Palette::chalkYellow);
        Symbol::draw(symbolName, mark, chalk, context);
    }

    QString symbolName;
    std::optional<QColor> tint;
    TextBlock block;
    QRectF capsule; ///< in the window
    Sheet sheet;
    QImage picture;
    Fade fade;
    SkippableTimer life;
};

/// The message on screen and its pending end.
std::unique_ptr<Panel> currentPanel;

// The windows must be gone before the connection to the display is.
void dismissAtTheEnd()
{
    static bool promised = false;
    if (std::exchange(promised, true))
        return;
    qAddPostRoutine([] {
        currentPanel.reset();
        promised = false;
    });
}

/// Null where no message can be shown.
Panel* showPanel(const QString& message, const QString& symbol, const std::optional<QColor>& tint)
{
    if (!qobject_cast<QApplication*>(QCoreApplication::instance()))
        return nullptr;
    const auto* screen = screenUnderPointer();
    if (!screen)
        return nullptr;
    dismiss();
    dismissAtTheEnd();
    const QRectF visible = WindowSystem::current().visibleFrame(*screen);
    currentPanel = std::make_unique<Panel>(message, symbol, tint, visible.size());
    auto& panel = *currentPanel;
    const double bottom = visible.bottom() - aboveVisibleBottom - freeSpace + shadowSpace;
    panel.move(qRound(visible.center().x() - panel.width() / 2.0), qRound(bottom - panel.height()));
    panel.show();
    panel.raise();
    panel.appear();
    return &panel;
}

} // namespace

void show(const QString& message, const QString& symbol, const std::optional<QColor>& tint)
{
    if (auto* panel = showPanel(message, symbol, tint))
        panel->leaveInTime();
}

void showUntilReplaced(const QString& message, const QString& symbol) { showPanel(message, symbol, {}); }

std::optional<QString> currentMessage()
{
    if (!currentPanel)
        return std::nullopt;
    return currentPanel->message;
}

void dismiss()
{
    if (auto* leaving = currentPanel.release())
        leaving->goAtOnce();
}

} // namespace pintalux::HUD
