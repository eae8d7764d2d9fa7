// SPDX-License-Identifier: MIT
#include "app/About.h"

#include "app/commandline/CommandLine.h"
#include "app/icon/AppIcon.h"
#include "controls/theme/Theme.h"
#include "platform/base/Author.h"
#include "platform/graphics/Draw.h"

#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

// Points.
constexpr int windowWidth = 300;
constexpr int padding = 28;
constexpr int iconSize = 96;
constexpr int iconTrim = 8; ///< of the icon's own margin

QLabel* label(const QString& text, double size, FontWeight weight, const QString& name)
{
    auto* made = new QLabel(text);
    made->setObjectName(name);
    made->setFont(toolkitFont(Draw::systemFont(size, weight)));
    made->setAlignment(Qt::AlignHCenter);
    return made;
}

void setTextColor(QWidget& widget, const QColor& color)
{
    auto colors = widget.palette();
    colors.setColor(QPalette::WindowText, color);
    colors.setColor(QPalette::Link, color);
    widget.setPalette(colors);
}

} // namespace

About::About(std::function<void(const QUrl&)> openUrl, QWidget* parent)
    : QWidget(parent, Qt::Tool | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint)
{
    setWindowTitle(u"Acerca de Pintalux"_s);
    setWindowIcon(AppIcon::windowIcon());
    setAttribute(Qt::WA_DeleteOnClose);

    auto* icon = new QLabel;
    auto picture = QPixmap::fromImage(AppIcon::render(int(iconSize * devicePixelRatioF())));
    picture.setDevicePixelRatio(devicePixelRatioF());
    icon->setPixmap(picture);
    icon->setAlignment(Qt::AlignHCenter);
    auto* website = label({}, 11, FontWeight::medium, u"link"_s);
    website->setTextFormat(Qt::RichText);
    website->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    connect(website, &QLabel::linkActivated, this,
        [open = std::move(openUrl)](const QString& address) { open(QUrl(address)); });

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(padding, padding - iconTrim, padding, padding);
    column->setSpacing(0);
    column->addWidget(icon);
    column->addSpacing(10 - iconTrim / 2);
    column->addWidget(label(u"Pintalux"_s, 20, FontWeight::bold, u"text"_s));
    column->addSpacing(3);
    column->addWidget(label(u"Versión "_s + CommandLine::version(), 12, FontWeight::regular, u"text2"_s));
    column->addSpacing(18);
    column->addWidget(label(Author::credit.toString(), 11, FontWeight::medium, u"text"_s));
    column->addSpacing(4);
    column->addWidget(website);
    applyTheme();
    setFixedSize(windowWidth, sizeHint().height());
}

void About::applyTheme()
{
    const auto& theme = Theme::of(palette());
    for (auto* part : findChildren<QLabel*>()) {
        if (part->objectName() == u"link") {
            setTextColor(*part, theme.onSelected);
            part->setText(u"<a href=\"%1\" style=\"text-decoration:none;color:%2\">%3</a>"_s.arg(
                Author::url.toString(), theme.onSelected.name(), Author::website.toString()));
        } else {
            setTextColor(*part, part->objectName() == u"text2" ? theme.text2 : theme.text);
        }
    }
    update();
}

void About::paintEvent(QPaintEvent* event)
{
    QPainter(this).fillRect(event->rect(), Theme::of(palette()).form);
}

void About::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape || event->matches(QKeySequence::Close))
        close();
    else
        QWidget::keyPressEvent(event);
}

void About::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::PaletteChange)
        applyTheme();
    QWidget::changeEvent(event);
}

} // namespace pintalux
