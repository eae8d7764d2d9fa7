// SPDX-License-Identifier: MIT
#include "platform/windowing/Compositor.h"

#include "platform/base/Error.h"
#include "platform/x11/Toolkit.h"
#include "platform/x11/XcbConnection.h"

#include <QApplication>
#include <QBitmap>
#include <QPainter>
#include <QPainterPath>
#include <QStyle>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

bool onX11() { return QGuiApplication::platformName() == u"xcb"_s; }

} // namespace

bool hasCompositor()
{
    if (!onX11())
        return true;
    try {
        return x11::XcbConnection().hasCompositor();
    } catch (const Error&) {
        return false;
    }
}

void cutToSheet(QWidget& window, const QRectF& sheet, double radius)
{
    QPainterPath shape;
    shape.addRoundedRect(sheet, radius, radius);
    QBitmap mask(window.size());
    mask.clear();
    QPainter(&mask).fillPath(shape, Qt::color1);
    window.setMask(mask);
}

void disableCompositorShadow(QWidget& window)
{
    if (auto* connection = x11::toolkitConnection())
        x11::withoutCompositorShadow(connection, xcb_window_t(window.winId()));
}

bool prefersReducedMotion()
{
    return QApplication::style()->styleHint(QStyle::SH_Widget_Animation_Duration) <= 0;
}

} // namespace pintalux
