// SPDX-License-Identifier: MIT
#include "platform/graphics/Color.h"

#include <algorithm>
#include <cmath>

namespace pintalux {

std::optional<QColor> colorFromHex(QStringView text)
{
    auto digits = text.trimmed();
    if (digits.startsWith(u'#'))
        digits = digits.mid(1);
    const auto isHexDigit = [](QChar c) {
        return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
    };
    if (digits.size() != 6 || !std::ranges::all_of(digits, isHexDigit))
        return std::nullopt;
    return QColor::fromRgb(0xFF000000 | digits.toUInt(nullptr, 16));
}

QString hexString(const QColor& color)
{
    const auto component = [](float value) { return std::clamp(int(std::lround(value * 255)), 0, 255); };
    const auto rgb = color.toRgb();
    return QString::asprintf(
        "#%02X%02X%02X", component(rgb.redF()), component(rgb.greenF()), component(rgb.blueF()));
}

double luminance(const QColor& color)
{
    const auto rgb = color.toRgb();
    return 0.2126 * rgb.redF() + 0.7152 * rgb.greenF() + 0.0722 * rgb.blueF();
}

QColor contrasting(const QColor& color)
{
    return luminance(color) <= 0.74 ? QColor(Qt::white) : QColor(0x1F, 0x23, 0x28);
}

QColor withAlpha(QColor color, double alpha)
{
    color.setAlphaF(float(alpha));
    return color;
}

QColor faded(QColor color, double amount) { return withAlpha(color, color.alphaF() * amount); }

QColor mixed(const QColor& from, const QColor& to, double amount)
{
    const double alpha = from.alphaF() + (to.alphaF() - from.alphaF()) * amount;
    if (alpha <= 0)
        return Qt::transparent;
    const auto component = [&](double a, double b) {
        return float((a * from.alphaF() * (1 - amount) + b * to.alphaF() * amount) / alpha);
    };
    return QColor::fromRgbF(component(from.redF(), to.redF()), component(from.greenF(), to.greenF()),
        component(from.blueF(), to.blueF()), float(alpha));
}

} // namespace pintalux
