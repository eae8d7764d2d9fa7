// SPDX-License-Identifier: MIT
#pragma once

#include <QIconEngine>
#include <QPainter>
#include <QPixmap>

namespace pintalux {

/// An icon that is painted anew at each size: a subclass gives `paint` and `clone`.
class VectorIcon : public QIconEngine {
public:
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap result(size);
        result.fill(Qt::transparent);
        QPainter painter(&result);
        paint(&painter, QRect({}, size), mode, state);
        return result;
    }
};

} // namespace pintalux
