// SPDX-License-Identifier: MIT
#include "platform/desktop/LetterKey.h"

#include <QChar>
#include <QKeyEvent>

#include <array>
#include <string_view>

namespace pintalux {

namespace {

/// A row of letter keys and the scan code of its first one; the codes are the same on X11 and Wayland.
struct Row {
    std::string_view letters;
    quint32 firstCode;
};
constexpr std::array<Row, 3> rows{{{"QWERTYUIOP", 24}, {"ASDFGHJKL", 38}, {"ZXCVBNM", 52}}};

quint32 scanCodeOf(char letter)
{
    for (const auto& [letters, firstCode] : rows)
        if (const auto place = letters.find(letter); place != std::string_view::npos)
            return firstCode + quint32(place);
    return 0;
}

bool isForeignLetter(int key)
{
    constexpr int lastOfLatin = 0x24f;
    return key > lastOfLatin && key < 0x10000 && QChar(char16_t(key)).isLetter();
}

} // namespace

bool isLetterKey(const QKeyEvent& event, char letter)
{
    return event.key() == int(letter)
        || (isForeignLetter(event.key()) && event.nativeScanCode() == scanCodeOf(letter));
}

} // namespace pintalux
