// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QObject>
#include <QString>

#include <optional>

namespace pintalux {

/// What the canvas tells the bar: the colour under the pointer and the zoom.
class HoverInfo : public QObject {
    Q_OBJECT

public:
    /// Of the document's picture, without marks; none while the pointer is not over it.
    const std::optional<QColor>& color() const { return hovered; }
    /// Its hexadecimal text; empty for none.
    const QString& hex() const { return hexText; }
    /// Screen points per point of the picture, in percent.
    int zoom() const { return percent; }

    void setColor(const std::optional<QColor>& color);
    void setZoom(int value);

Q_SIGNALS:
    /// Only when something became different.
    void changed();

private:
    std::optional<QColor> hovered;
    QString hexText;
    int percent = 100;
};

} // namespace pintalux
