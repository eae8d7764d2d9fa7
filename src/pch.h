// SPDX-License-Identifier: MIT

// Precompiled for every file of the library: the toolkit's headers that nearly all of them need.
#pragma once

#include <QColor>
#include <QImage>
#include <QList>
#include <QPainter>
#include <QPainterPath>
#include <QPointF>
#include <QRectF>
#include <QString>
#include <QUuid>

#include <algorithm>
#include <cmath>
#include <memory>
#include <optional>
