// SPDX-License-Identifier: MIT
#include "platform/graphics/PathData.h"

#include <array>
#include <span>

namespace pintalux {

namespace {

class Reader {
public:
    explicit Reader(QStringView data)
        : rest(data)
    {
    }

    /// The next letter; the last one again where a number follows; none at the end or at a mistake.
    std::optional<QChar> command(std::optional<QChar> last)
    {
        skipSpace();
        if (rest.isEmpty())
            return std::nullopt;
        if (rest.front().isLetter())
            return take();
        if (last && last->toUpper() == u'M')
            return last->isUpper() ? u'L' : u'l'; // further points of a move are lines
        return last;
    }

    bool numbers(std::span<double> values)
    {
        for (auto& value : values)
            if (!number(value))
                return false;
        return true;
    }

    bool isAtEnd()
    {
        skipSpace();
        return rest.isEmpty();
    }

private:
    QChar take()
    {
        const auto first = rest.front();
        rest = rest.sliced(1);
        return first;
    }

    void skipSpace()
    {
        while (!rest.isEmpty() && (rest.front().isSpace() || rest.front() == u','))
            rest = rest.sliced(1);
    }

    bool number(double& value)
    {
        skipSpace();
        qsizetype length = 0;
        bool point = false;
        for (; length < rest.size(); ++length) {
            const auto character = rest[length];
            const bool sign = character == u'-' && length == 0;
            const bool firstPoint = character == u'.' && !point;
            if (!sign && !firstPoint && !character.isDigit())
                break;
            point = point || firstPoint;
        }
        bool valid = false;
        value = rest.first(length).toDouble(&valid);
        rest = rest.sliced(length);
        return valid;
    }

    QStringView rest;
};

struct Command {
    char16_t letter;
    std::size_t numbers;
};

constexpr std::array<Command, 8> commands{
    {{u'M', 2}, {u'L', 2}, {u'H', 1}, {u'V', 1}, {u'C', 6}, {u'S', 4}, {u'Q', 4}, {u'Z', 0}}};

} // namespace

QPainterPath pathFromData(QStringView data)
{
    QPainterPath path;
    Reader reader(data);
    std::optional<QChar> letter;
    QPointF smoothControl; ///< where a curve that continues the last one smoothly has its first control point
    while ((letter = reader.command(letter))) {
        const auto upper = letter->toUpper().unicode();
        const auto known = std::ranges::find(commands, upper, &Command::letter);
        std::array<double, 6> n{};
        if (known == commands.end() || !reader.numbers(std::span(n).first(known->numbers)))
            break;
        const auto from = path.currentPosition();
        const auto origin = letter->isLower() ? from : QPointF();
        const auto point = [&](std::size_t index) { return origin + QPointF(n[index], n[index + 1]); };
        auto lastControl = path.currentPosition();
        switch (upper) {
        case u'M':
            path.moveTo(point(0));
            break;
        case u'L':
            path.lineTo(point(0));
            break;
        case u'H':
            path.lineTo(origin.x() + n[0], from.y());
            break;
        case u'V':
            path.lineTo(from.x(), origin.y() + n[0]);
            break;
        case u'C':
            path.cubicTo(point(0), point(2), point(4));
            lastControl = point(2);
            break;
        case u'S':
            path.cubicTo(smoothControl, point(0), point(2));
            lastControl = point(0);
            break;
        case u'Q':
            path.quadTo(point(0), point(2));
            break;
        default:
            path.closeSubpath();
            break;
        }
        const auto end = path.currentPosition();
        smoothControl = upper == u'C' || upper == u'S' ? 2 * end - lastControl : end;
        if (upper == u'Z')
            letter.reset();
    }
    if (!reader.isAtEnd())
        qWarning("A drawing ends too early: %s", qPrintable(data.toString()));
    return path;
}

} // namespace pintalux
