// SPDX-License-Identifier: MIT
#include "settings/preferences/PreferencesView.h"

#include "controls/theme/ControlPainting.h"
#include "controls/theme/Theme.h"
#include "platform/graphics/Draw.h"
#include "settings/preferences/PreferencesForm.h"
#include "settings/preferences/PreferencesSections.h"

#include <QBoxLayout>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

constexpr int formWidth = 580;
constexpr int sides = 24;
constexpr int aboveHeader = 22;
constexpr int belowLast = 22;
constexpr int aboveTitle = 20;
constexpr int belowTitle = 7;
constexpr int titleInset = 2;

} // namespace

/// What scrolls: all groups on the form's ground.
class PreferencesView::Sheet : public QWidget {
protected:
    void paintEvent(QPaintEvent* event) override
    {
        QPainter(this).fillRect(event->rect(), Theme::of(palette()).form);
    }
};

/// A slim scroll bar that lies over the form, in place of the toolkit's own, which is hidden.
class PreferencesView::ScrollPill : public QWidget {
public:
    ScrollPill(QScrollBar* hiddenBar, QWidget* parent)
        : QWidget(parent)
        , bar(hiddenBar)
    {
        connect(bar, &QAbstractSlider::valueChanged, this, [this] { update(); });
        connect(bar, &QAbstractSlider::rangeChanged, this, [this] {
            setVisible(bar->maximum() > 0);
            update();
        });
    }

    static constexpr int reach = 16; ///< width of what takes the mouse

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.fillPath(Draw::roundedRect(handle(), pillWidth / 2), Theme::of(palette()).disabled);
    }

    void mousePressEvent(QMouseEvent* event) override
    {
        const auto pill = handle();
        const double y = event->position().y();
        grabbedAt = y >= pill.top() && y <= pill.bottom() ? y - pill.top() : pill.height() / 2;
        moveHandleTo(y);
    }

    void mouseMoveEvent(QMouseEvent* event) override { moveHandleTo(event->position().y()); }

private:
    QRectF handle() const
    {
        const double way = height() - 2 * inset;
        const double length = std::max(shortest, way * bar->pageStep() / (bar->maximum() + bar->pageStep()));
        const double travelled = double(bar->value()) / std::max(1, bar->maximum());
        return {width() - edgeGap - pillWidth, inset + travelled * (way - length), pillWidth, length};
    }

    void moveHandleTo(double y)
    {
        const double way = height() - 2 * inset - handle().height();
        const double share = way > 0 ? (y - grabbedAt - inset) / way : 0;
        bar->setValue(int(std::lround(share * bar->maximum())));
    }

    static constexpr double pillWidth = 6;
    static constexpr double edgeGap = 5;
    static constexpr double inset = 6;
    static constexpr double shortest = 32;
    QScrollBar* bar;
    double grabbedAt = 0; ///< from the handle's upper end
};

PreferencesView::PreferencesView(Settings& settings, PreferencesHost host, QWidget* parent)
    : QScrollArea(parent)
    , binding(std::make_unique<Preferences::Binding>(settings, std::move(host)))
{
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWidgetResizable(true);
    setMinimumWidth(formWidth);

    auto* form = new Sheet;
    column = new QVBoxLayout(form);
    column->setContentsMargins(sides, aboveHeader, sides, belowLast);
    column->setSpacing(0);
    column->addWidget(Preferences::makeHeader(*binding));
    addSection(u"Al capturar"_s, Preferences::makeCaptureGroup(*binding));
    addSection(u"Después de capturar"_s, Preferences::makeAfterCaptureGroup(*binding));
    addSection(u"Atajos de teclado"_s, Preferences::makeShortcutGroup(*binding));
    addSection(u"Editor (cómo empieza cada captura)"_s, Preferences::makeEditorGroup(*binding));
    addSection({}, Preferences::makeSystemGroup(*binding));
    addSection(u"Configuración"_s, Preferences::makeFileGroup(*binding));
    column->addStretch();
    setWidget(form);

    pill = new ScrollPill(verticalScrollBar(), this);
    verticalScrollBar()->setSingleStep(Form::rowHeight / 2);
}

PreferencesView::~PreferencesView() = default;

void PreferencesView::addSection(const QString& title, QWidget* group)
{
    column->addSpacing(aboveTitle);
    if (!title.isEmpty()) {
        auto* line = new QHBoxLayout;
        line->setContentsMargins(titleInset, 0, titleInset, belowTitle);
        line->addWidget(new Form::Label(title, Form::sectionTitle));
        line->addStretch();
        column->addLayout(line);
        group->setAccessibleName(title);
    }
    column->addWidget(group);
}

void PreferencesView::refresh() { binding->refresh(); }

int PreferencesView::contentHeight() const
{
    return column->hasHeightForWidth() ? column->totalHeightForWidth(width())
                                       : column->totalSizeHint().height();
}

void PreferencesView::resizeEvent(QResizeEvent* event)
{
    QScrollArea::resizeEvent(event);
    pill->setGeometry(width() - ScrollPill::reach, 0, ScrollPill::reach, height());
    pill->raise();
}

void PreferencesView::showEvent(QShowEvent* event)
{
    refresh();
    QScrollArea::showEvent(event);
}

} // namespace pintalux
