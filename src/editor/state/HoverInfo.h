// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QObject>
#include <QSize>
#include <QString>

#include <optional>

namespace pintalux {

/// What the canvas tells the bar: the colour under the pointer, the zoom, and the size of what is being
/// drawn.
class HoverInfo : public QObject {
    Q_OBJECT

public:
    /// Of the document's picture, without marks; none while the pointer is not over it.
    const std::optional<QColor>& color() const { return hovered; }
    /// Its hexadecimal text; empty for none.
    const QString& hex() const { return hexText; }
    /// Screen points per point of the picture, in percent.
    int zoom() const { return percent; }

    /// What is being drawn, when its size matters.
    struct Drawn {
        enum class Kind { shape, crop } kind;
        QSize pixels; ///< of the document
        bool operator==(const Drawn&) const = default;
    };
    const std::optional<Drawn>& drawn() const { return underWay; }

    void setColor(const std::optional<QColor>& color);
    void setZoom(int value);
    void setDrawn(const std::optional<Drawn>& value);

Q_SIGNALS:
    /// Only when something became different.
    void changed();

private:
    std::optional<QColor> hovered;
    QString hexText;
    int percent = 100;
    std::optional<Drawn> underWay;
};

} // namespace pintalux
