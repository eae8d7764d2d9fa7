// SPDX-License-Identifier: MIT
#include "platform/image/Orientation.h"

#include <QTransform>
#include <QtEndian>

#include <array>
#include <optional>

namespace pintalux {

namespace {

enum class Order { lowestFirst, highestFirst };

/// Reads numbers out of bytes that may end anywhere.
class Bytes {
public:
    Bytes(QByteArrayView bytes, Order order)
        : bytes(bytes)
        , order(order)
    {
    }

    template <typename Number> std::optional<Number> number(qint64 at) const
    {
        if (at < 0 || at + qint64(sizeof(Number)) > bytes.size())
            return std::nullopt;
        const auto* from = bytes.data() + at;
        return order == Order::lowestFirst ? qFromLittleEndian<Number>(from) : qFromBigEndian<Number>(from);
    }

private:
    QByteArrayView bytes;
    Order order;
};

/// The orientation out of a block of metadata: a header, then a list of entries of twelve bytes.
int orientationIn(QByteArrayView metadata)
{
    if (metadata.startsWith(QByteArrayView("Exif\0\0", 6)))
        metadata = metadata.sliced(6); // some writers keep the prefix that JPEG files need
    if (!metadata.startsWith("II") && !metadata.startsWith("MM"))
        return 1;
    const Bytes bytes(metadata, metadata.startsWith("II") ? Order::lowestFirst : Order::highestFirst);
    const qint64 list = bytes.number<quint32>(4).value_or(0);
    const int count = bytes.number<quint16>(list).value_or(0);
    for (int i = 0; i < count; ++i) {
        constexpr int entryLength = 12, orientationTag = 0x0112;
        const qint64 entry = list + 2 + qint64(i) * entryLength;
        if (bytes.number<quint16>(entry) != orientationTag)
            continue;
        const int value = bytes.number<quint16>(entry + 8).value_or(1);
        return value >= 1 && value <= 8 ? value : 1;
    }
    return 1;
}

/// How a format strings its chunks together.
struct ChunkFormat {
    qint64 firstChunk;       ///< where they begin
    Order order;             ///< of their lengths
    int lengthAt, nameAt;    ///< in a chunk's head
    int checksum;            ///< bytes after the content
    int alignment;           ///< to which a content is filled up
    QByteArrayView metadata; ///< name of the chunk with it
};

const ChunkFormat png{8, Order::highestFirst, 0, 4, 4, 1, "eXIf"};
const ChunkFormat webp{12, Order::lowestFirst, 4, 0, 0, 2, "EXIF"};

} // namespace

int storedOrientation(const QByteArray& file)
{
    const bool isPng = file.startsWith("\x89PNG\r\n\x1a\n");
    if (!isPng && !(file.startsWith("RIFF") && file.mid(8, 4) == "WEBP"))
        return 1;
    const auto& format = isPng ? png : webp;
    const Bytes bytes(file, format.order);
    constexpr qint64 headLength = 8;
    for (qint64 at = format.firstChunk; at + headLength <= file.size();) {
        const qint64 length = bytes.number<quint32>(at + format.lengthAt).value_or(0);
        const qint64 content = at + headLength;
        if (content + length > file.size())
            return 1;
        if (QByteArrayView(file).sliced(at + format.nameAt, 4) == format.metadata)
            return orientationIn(QByteArrayView(file).sliced(content, length));
        at = content + (length + format.alignment - 1) / format.alignment * format.alignment
            + format.checksum;
    }
    return 1;
}

QImage oriented(const QImage& image, int orientation)
{
    /// Quarter turns clockwise, where asked after left and right have changed places.
    struct Turn {
        bool mirrored;
        int quarters;
    };
    static constexpr std::array<Turn, 8> turns{
        {{false, 0}, {true, 0}, {false, 2}, {true, 2}, {true, 3}, {false, 1}, {true, 1}, {false, 3}}};
    if (orientation <= 1 || orientation > 8)
        return image;
    const auto [mirrored, quarters] = turns[std::size_t(orientation - 1)];
    const auto turned = mirrored ? image.mirrored(true, false) : image;
    return quarters == 0 ? turned : turned.transformed(QTransform().rotate(90 * quarters));
}

} // namespace pintalux
