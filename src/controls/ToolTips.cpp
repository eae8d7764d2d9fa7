// SPDX-License-Identifier: MIT
#include "controls/ToolTips.h"

#include "controls/Popover.h"
#include "controls/Sheet.h"
#include "controls/theme/Theme.h"
#include "platform/graphics/Color.h"
#include "platform/graphics/Draw.h"
#include "platform/graphics/Geometry.h"
#include "platform/graphics/TextBlock.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QHelpEvent>
#include <QMenu>
#include <QPainter>
#include <QPointer>
#include <QScreen>
#include <QTimer>

namespace pintalux::ToolTips {

namespace {

constexpr double sidePadding = 10;
constexpr double verticalPadding = 6;
constexpr double radius = 8;
constexpr double widest = 320;
constexpr QColor ground{0x26, 0x24, 0x2E};
/// Having read one tip, the person need not wait for that of the neighbour.
constexpr int stillReadingMilliseconds = 300;
/// Beneath anything higher, a tip would be far from the pointer.
constexpr int highestControl = 72;

class Tip : public QWidget {
public:
    explicit Tip(const QString& shownText)
        : text(shownText)
        , block(laidOut(shownText))
        , sheet(*this, WindowRole::tip, {.radius = radius})
    {
        setAccessibleName(text);
        setFixedSize(int(std::ceil(block.size().width() + 2 * sidePadding)),
            int(std::ceil(block.size().height() + 2 * verticalPadding)));
    }

    const QString text;

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QRectF shape(rect());
        if (sheet.isTranslucent())
            painter.fillPath(Draw::roundedRect(shape, radius), ground);
        else
            painter.fillRect(rect(), ground);
        painter.setPen(QPen(withAlpha(Qt::white, 0.10), 1));
        painter.drawPath(Draw::roundedRect(expanded(shape, -0.5), radius - 0.5));
        block.draw(painter, {sidePadding, verticalPadding});
    }

private:
    static TextBlock laidOut(const QString& text)
    {
        const TextAttributes attributes{Draw::systemFont(12, FontWeight::medium), Qt::white};
        const TextBlock line(text, attributes);
        const double room = widest - 2 * sidePadding;
        return line.size().width() <= room ? line : TextBlock(text, attributes, room);
    }

    TextBlock block;
    Sheet sheet;
};

/// Decides when a tip appears and goes. The application owns it.
class Watch : public QObject {
public:
    explicit Watch(QApplication& application)
        : QObject(&application)
    {
        timer.setSingleShot(true);
        connect(&timer, &QTimer::timeout, this, [this] { appear(); });
        application.installEventFilter(this);
        lastShown.invalidate();
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        auto* widget = qobject_cast<QWidget*>(watched);
        // A tip that is being closed would be deleted in the middle of it.
        if (!widget || widget == tip.get())
            return false;
        switch (event->type()) {
        case QEvent::ToolTip:
            return takeOver(*widget, *static_cast<QHelpEvent*>(event));
        case QEvent::Enter:
            enter(*widget);
            break;
        case QEvent::Leave:
            if (subject && (widget == subject || subject->isAncestorOf(widget)))
                leave();
            break;
        case QEvent::MouseButtonPress:
        case QEvent::KeyPress:
        case QEvent::Wheel:
        case QEvent::WindowDeactivate:
        case QEvent::Close:
            leave();
            break;
        case QEvent::Hide:
            if (widget == subject)
                leave();
            break;
        default:
            break;
        }
        return false;
    }

    void show(const QString& text, const QRect& screenRect)
    {
        hide();
        if (text.isEmpty())
            return;
        tip = std::make_unique<Tip>(text);
        const auto* screen = QGuiApplication::screenAt(screenRect.center());
        if (!screen)
            screen = QGuiApplication::primaryScreen();
        const int inside = int(Theme::screenMargin);
        const auto visible
            = WindowSystem::current().visibleFrame(*screen).adjusted(inside, inside, -inside, -inside);
        tip->move(Popover::place(tip->size(), screenRect, visible).topLeft());
        tip->show();
        tip->raise();
    }

    void hide()
    {
        if (tip)
            lastShown.start();
        tip.reset();
    }

    void leave()
    {
        timer.stop();
        subject = nullptr;
        hide();
    }

    QString text() const { return tip ? tip->text : QString(); }

private:
    void enter(QWidget& entered)
    {
        auto* explained = &entered;
        while (explained && explained->toolTip().isEmpty() && !explained->isWindow())
            explained = explained->parentWidget();
        if (!explained || explained->toolTip().isEmpty())
            return leave();
        if (explained == subject)
            return;
        leave();
        subject = explained;
        const bool reading = lastShown.isValid() && lastShown.elapsed() < stillReadingMilliseconds;
        timer.start(reading ? 0 : Theme::toolTipDelayMilliseconds);
    }

    void appear()
    {
        if (!subject || !subject->isVisible())
            return;
        QRect beside(subject->mapToGlobal(QPoint(0, 0)), subject->size());
        if (beside.height() > highestControl) {
            constexpr int pointerHeight = 16;
            beside = QRect(QCursor::pos(), QSize(1, pointerHeight));
        }
        show(subject->toolTip(), beside);
    }

    /// The toolkit asks for a tip: menus explain their rows then; widgets have been seen to already.
    bool takeOver(QWidget& widget, const QHelpEvent& event)
    {
        if (const auto* menu = qobject_cast<QMenu*>(&widget)) {
            const auto* action = menu->toolTipsVisible() ? menu->actionAt(event.pos()) : nullptr;
            // An action without one of its own gives its title.
            if (!action || action->toolTip() == QString(action->text()).remove(u'&'))
                return true;
            const auto row = menu->actionGeometry(const_cast<QAction*>(action));
            show(action->toolTip(), QRect(menu->mapToGlobal(row.topLeft()), row.size()));
            subject = &widget;
            return true;
        }
        return !widget.toolTip().isEmpty();
    }

    QPointer<QWidget> subject; ///< the widget under the pointer that has something to say
    QTimer timer;
    std::unique_ptr<Tip> tip;
    QElapsedTimer lastShown;
};

QPointer<Watch> watch;

} // namespace

void install(QApplication& application)
{
    if (!watch)
        watch = new Watch(application);
}

void show(const QString& text, const QRect& screenRect)
{
    if (watch)
        watch->show(text, screenRect);
}

void hide()
{
    if (watch)
        watch->leave();
}

QString currentText() { return watch ? watch->text() : QString(); }

} // namespace pintalux::ToolTips
