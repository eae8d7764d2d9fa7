// SPDX-License-Identifier: MIT
#include "platform/session/ThemeName.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace pintalux {

bool isDarkTheme(const QString& name)
{
    static const QRegularExpression dark(
        u"(^|[-_: ])dark($|[-_: ])"_s, QRegularExpression::CaseInsensitiveOption);
    return dark.match(name).hasMatch();
}

} // namespace pintalux
