// SPDX-License-Identifier: MIT
#include "editor/bars/BrandMarkView.h"

#include "app/icon/BrandMark.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

constexpr int side = 24;

} // namespace

BrandMarkView::BrandMarkView(std::function<void(QWidget&)> takeAlong, QWidget* parent)
    : QWidget(parent)
    , dragOut(std::move(takeAlong))
{
    setFixedSize(side, side);
    setCursor(Qt::OpenHandCursor);
    const auto help = u"Arrastra para llevarte la imagen"_s;
    setToolTip(help);
    setAccessibleName(help);
}

void BrandMarkView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    BrandMark::draw(rect(), painter);
}

void BrandMarkView::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    pressed = event->pos();
    setCursor(Qt::ClosedHandCursor);
}

void BrandMarkView::mouseMoveEvent(QMouseEvent* event)
{
    if (!pressed || (event->pos() - *pressed).manhattanLength() < QApplication::startDragDistance())
        return;
    // A drag runs its own loop and swallows the release.
    pressed.reset();
    dragOut(*this);
    setCursor(Qt::OpenHandCursor);
}

void BrandMarkView::mouseReleaseEvent(QMouseEvent*)
{
    pressed.reset();
    setCursor(Qt::OpenHandCursor);
}

} // namespace pintalux
